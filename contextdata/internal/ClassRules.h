#pragma once

// Which classes and members a query looks at: rules that several queries share.

#include <contextdata/KCOSContextData/MethodInfo.h>

namespace kcos {

class COSClass;
class COSInterface;
struct COSExtendedAccess;

}  // namespace kcos

namespace KCOSContextData {

/// Is there a class, and does it pass its check? What the check throws propagates.
bool isValid(kcos::COSClass* cls);

/// Do the methods of the class of that name take part in that position? Only the name counts.
bool isClassToCompleteMethodsFor(kcos::COSInternedName classId, const MethodInfo::GetContext& context);

/// Is the member defined by the class itself, not inherited?
bool isDefinedBy(kcos::COSInterface* member, const kcos::COSInternedName& classId);

/// Does a member's access name the class, or one that it derives from?
bool isGranted(const kcos::COSExtendedAccess& access, const ClassInfo& accessingClass);

}  // namespace KCOSContextData
