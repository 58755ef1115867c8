#include "contextdata/internal/ClassRules.h"

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <algorithm>

namespace KCOSContextData {

// The check may name another class than the one that is checked; only whether there is one counts here.
bool isValid(kcos::COSClass* cls) { return cls != nullptr && cls->checkClass(false) != nullptr; }

bool isClassToCompleteMethodsFor(kcos::COSInternedName classId, const MethodInfo::GetContext& context) {
  switch (context) {
    case MethodInfo::GetContext::Any:
      return true;
    case MethodInfo::GetContext::BeforeDot:
      return MethodInfo::isClassToCompleteMethodsForBeforeDot(classId);
    case MethodInfo::GetContext::AfterDot:
      return MethodInfo::isClassToCompleteMethodsForAfterDot(classId);
    // A context may come from a client as a number: one that is none lets no class take part.
    default:
      return false;
  }
}

bool isGranted(const kcos::COSExtendedAccess& access, const ClassInfo& accessingClass) {
  return std::ranges::any_of(access.classes,
                             [&](const auto& classId) { return accessingClass.isA(classId); });
}

}  // namespace KCOSContextData
