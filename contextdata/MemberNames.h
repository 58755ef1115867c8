#pragma once

// The one of the member lists that is not exported. No query asks for it: it completes the selections of
// methods for sources of the library.

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
