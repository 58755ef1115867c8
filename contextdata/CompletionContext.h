#pragma once

#include <contextdata/KCOSContextData/MethodInfo.h>

namespace KCOSContextData {

/// Does the class of that name take part in that position? Only the name counts.
bool isClassToCompleteMethodsFor(kcos::COSInternedName classId, const MethodInfo::GetContext& context);

}  // namespace KCOSContextData
