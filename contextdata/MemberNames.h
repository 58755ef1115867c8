#pragma once

// Member lists that only the library itself asks for.

#include <contextdata/KCOSContextData/MemberNames.h>

#include <string>
#include <vector>

namespace KCOSContextData {

/// Methods that are not static; otherwise as getClassMethodNames().
bool getClassNonStaticMethodNames(const ResolvedClassID& id, std::vector<std::u16string>& names,
                                  bool& classFlag);
bool getClassNonStaticMethodNames(const std::u16string& className, std::vector<std::u16string>& names,
                                  bool& classFlag);

}  // namespace KCOSContextData
