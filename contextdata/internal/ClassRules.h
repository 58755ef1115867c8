#pragma once

// Which classes and members a query looks at: rules that several queries share.

#include <contextdata/KCOSContextData/MethodInfo.h>
#include <contextdata/KCOSContextData/PropertyVisitorMutable.h>

#include "host/Classes.h"
#include "host/Members.h"

namespace KCOSContextData {

/// Is there a class, and does it pass its check? What the check throws propagates.
bool isValid(kcos::COSClass* cls);

/// Do the methods of the class of that name take part in that position? Only the name counts.
bool isClassToCompleteMethodsFor(kcos::COSInternedName classId, const MethodInfo::GetContext& context);

/// Which members of a walk a class defines itself, not inherited. A walk meets the members of a class one after the other,
/// so that the class is asked for its identity but once for all of them.
inline bool isDefinedBy(kcos::COSInterface* member, const kcos::COSInternedName& classId,
                        DefiningClasses& met) {
  const kcos::COSClass* definingClass = kcos::cosiClassOfMember(member);
  if (definingClass == met.other) return false;  // null among them
  if (definingClass == met.own) return true;
  const bool isOwn = definingClass->getID() == classId;
  (isOwn ? met.own : met.other) = definingClass;
  return isOwn;
}

/// Does a member's access name the class, or one that it derives from?
bool isGranted(const kcos::COSExtendedAccess& access, const ClassInfo& accessingClass);

}  // namespace KCOSContextData
