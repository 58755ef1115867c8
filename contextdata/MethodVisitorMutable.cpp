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
  return enclosing == nullptr ? simpleName
                              : std::string(memberName(enclosing->getDottedName())) + "." + simpleName;
}

/// Its name is the class's, or what stands after a dot of it.
bool isConstructor(std::string_view methodName, std::string_view className) {
  if (!className.ends_with(methodName)) return false;
  className.remove_suffix(methodName.size());
  return className.empty() || className.ends_with('.');
}

}  // namespace

MethodVisitorMutable::MethodVisitorMutable(const ClassInfo* ownerRecord)
    : owner(ownerRecord),
      access{kcos::PublicAccess},
      accessingClass(nullptr),
      context(MethodInfo::GetContext::None),
      includeConstructors(false),
      includeOperatorOverloads(false),
      includeHidden(false) {}

MethodVisitorMutable::~MethodVisitorMutable() = default;

void MethodVisitorMutable::clear() {
  walk_ = {};
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
  // The name is read first: a missing one is an error also of a method that another class defines. Those are most of what a
  // deep class is visited with, so that nothing else is done for them.
  const char* name = memberName(method->getName());
  if (isDefinedBy(member.get(), owner->classId, walk_.met)) collect(*method, name);
}

void MethodVisitorMutable::collect(kcos::COSMethodInfo& method, const char* name) {
  // The member's class is the owner, as the lines above have made sure.
  if (!walk_.ownerName) walk_.ownerName = {qualifiedName(owner->classId)};
  OwnerName& ownerName = *walk_.ownerName;
  const bool isOfLevel = std::ranges::find(access, std::int32_t{method.getMemberAccess()}) != access.end();
  if (!isOfLevel && !hasAccessingClass(&method)) return;

  name_ = name;
  // A hidden method masks inherited ones wherever it stands and whatever it is called, so it is filed before
  // the position and the name are looked at.
  const bool isHidden = !includeHidden && !method.isVisible();
  if (!isHidden) {
    // By the name within the namespace, while the query itself has asked by the identity: components differ
    // there.
    if (!ownerName.takesPart)
      ownerName.takesPart = isClassToCompleteMethodsFor(internedName(ownerName.narrow), context);
    if (!*ownerName.takesPart) return;
    if (!includeConstructors && isConstructor(name_, ownerName.narrow)) return;
  }
  // Operators are known by the wide name, which a decision needs for nothing else.
  if (onlyDecides && (isHidden || includeOperatorOverloads)) {
    (isHidden ? isHiddenAccepted : isAccepted) = true;
    return;
  }
  MethodInfo record;
  record.name = fl::i18n::to_ustring(name_);
  if (!isHidden && !includeOperatorOverloads && MethodInfo::isOperatorOverload(record.name)) return;
  if (onlyDecides) {
    isAccepted = true;
    return;
  }
  if (!ownerName.wide) ownerName.wide = fl::i18n::to_ustring(ownerName.narrow);
  record.definingClass = *ownerName.wide;
  record.isStatic = method.isStatic();
  (isHidden ? hiddenMethods : methods).push_back(std::move(record));
}

bool MethodVisitorMutable::hasAccessingClass(kcos::COSMethodInfo* method) const {
  return accessingClass != nullptr && isGranted(method->getExtendedAccess(), *accessingClass);
}

}  // namespace KCOSContextData
