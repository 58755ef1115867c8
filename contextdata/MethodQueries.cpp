#include <contextdata/KCOSContextData/ClassInfo.h>

#include <algorithm>
#include <string_view>
#include <unordered_set>

#include "contextdata/CompletionContext.h"
#include "contextdata/Inherited.h"
#include "host/Classes.h"
#include "host/Exceptions.h"

namespace KCOSContextData {

namespace {

using Methods = std::vector<MethodInfo>;

/// Classes that derive from this one offer no methods after the dot.
constexpr const char16_t* noDotMethodsMixin =
    u"korval.mixin.internal.indexing.DisallowCompletionOfDotMethodNames";

/// Removes the inherited methods that an own hidden one masks. An own visible one masks nothing.
void mask(Methods& inherited, const Methods& hidden) {
  if (inherited.empty()) return;
  std::unordered_set<std::u16string_view> names;
  names.reserve(hidden.size());
  for (const MethodInfo& method : hidden) names.insert(method.name);
  std::erase_if(inherited, [&](const MethodInfo& method) { return names.contains(method.name); });
}

}  // namespace

void ClassInfo::collectMethods() const {
  kcos::COSClass* cls = kcos::COSClass::getClass(classId);
  if (cls == nullptr || cls->checkClass(false) == nullptr || cls->isEnumeration()) return;
  cls->visitMethods(methodVisitor);
}

std::vector<MethodInfo> ClassInfo::getMethods(const MethodInfo::GetOptions& options) const {
  methodVisitor.clear(options);
  if (classId.isNull() || !isClassToCompleteMethodsFor(classId, options.context)) return {};
  if (options.context == MethodInfo::GetContext::AfterDot && isA(noDotMethodsMixin)) return {};
  try {
    collectMethods();
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
  Methods all = getMethodsOfSuperclasses(options);
  if (!options.includeHidden) mask(all, methodVisitor.hiddenMethods);
  all.insert(all.end(), methodVisitor.methods.begin(), methodVisitor.methods.end());
  return all;
}

std::vector<MethodInfo> ClassInfo::getMethods(const std::vector<std::int32_t>& access,
                                              const MethodInfo::GetContext& context,
                                              const ClassInfo* accessingClass) const {
  MethodInfo::GetOptions options;
  options.access = access;
  options.context = context;
  options.accessingClass = accessingClass;
  return getMethods(options);
}

std::vector<MethodInfo> ClassInfo::getMethodsOfSuperclasses(const MethodInfo::GetOptions& options) const {
  MethodInfo::GetOptions inheritedOptions = options;
  dropFirstPrivateLevel(inheritedOptions.access);
  Methods all;
  for (const auto& superclass : structure.superclasses) {
    append(all, superclass->getMethods(inheritedOptions));
  }
  return all;
}

}  // namespace KCOSContextData
