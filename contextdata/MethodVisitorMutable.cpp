#include <contextdata/KCOSContextData/ClassInfo.h>

#include <algorithm>

#include "contextdata/internal/ClassRules.h"
#include "contextdata/internal/Names.h"
#include "host/Classes.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

/// The name of a class within its namespace; empty for an unknown class.
std::string qualifiedName(const kcos::COSInternedName& classId) {
  const kcos::COSClass* cls = kcos::COSClass::getClass(classId);
  if (cls == nullptr) return {};
  const std::string simpleName = memberName(cls->getSimpleName());
  const kcos::COSNamespace* enclosing = cls->getNamespace();
  return enclosing == nullptr ? simpleName : memberName(enclosing->getDottedName()) + "." + simpleName;
}

bool isConstructor(const std::string& methodName, const std::string& className) {
  return methodName == className || className.ends_with("." + methodName);
}

}  // namespace

MethodVisitorMutable::MethodVisitorMutable(const ClassInfo* ownerRecord) : owner(ownerRecord) { clear({}); }

MethodVisitorMutable::~MethodVisitorMutable() = default;

void MethodVisitorMutable::clear() {
  methods.clear();
  hiddenMethods.clear();
}

void MethodVisitorMutable::clear(const MethodInfo::GetOptions& options) {
  clear();
  access = options.access;
  accessingClass = options.accessingClass;
  context = options.context;
  includeConstructors = options.includeConstructors;
  includeOperatorOverloads = options.includeOperatorOverloads;
  includeHidden = options.includeHidden;
}

void MethodVisitorMutable::visit(kcos::COSInterface* member) {
  visit(kcos::COSInterfacePtr(member), kcos::cosiToMethod(member));
}

void MethodVisitorMutable::visit(kcos::COSInterfacePtr member, kcos::COSMethodInfo* method) {
  // The name is read first: a missing one is an error also of a method that another class defines.
  const std::string name = memberName(method->getName());
  if (!isDefinedBy(member.get(), owner->classId)) return;
  // The member's class is the owner, as the lines above have made sure.
  const std::string className = qualifiedName(owner->classId);
  const bool isOfLevel = std::ranges::find(access, std::int32_t{method->getMemberAccess()}) != access.end();
  if (!isOfLevel && !hasAccessingClass(method)) return;

  // A hidden method masks inherited ones wherever it stands and whatever it is called, so it is filed before
  // the position and the name are looked at.
  const bool isHidden = !includeHidden && !method->isVisible();
  if (!isHidden) {
    // By the name within the namespace, while the query itself has asked by the identity: components differ
    // there.
    if (!isClassToCompleteMethodsFor(internedName(className), context)) return;
    if (!includeConstructors && isConstructor(name, className)) return;
    if (!includeOperatorOverloads && MethodInfo::isOperatorOverload(name)) return;
  }
  MethodInfo record{fl::i18n::to_ustring(name), fl::i18n::to_ustring(className), method->isStatic()};
  (isHidden ? hiddenMethods : methods).push_back(std::move(record));
}

bool MethodVisitorMutable::hasAccessingClass(kcos::COSMethodInfo* method) const {
  return accessingClass != nullptr && isGranted(method->getExtendedAccess(), *accessingClass);
}

}  // namespace KCOSContextData
