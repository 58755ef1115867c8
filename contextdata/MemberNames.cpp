#include "contextdata/MemberNames.h"

#include <contextdata/KCOSIntrospection.h>

#include "contextdata/internal/NameVisitors.h"
#include "contextdata/internal/Names.h"

namespace KCOSContextData {

namespace {

using Names = std::vector<std::u16string>;
using Query = bool (*)(const ResolvedClassID&, Names&, bool&);

bool listProperties(const ResolvedClassID& id, Names& names, bool& classFlag, std::uint32_t selection) {
  const kcos::COSClass* cls = KCOSIntrospection::getCOSClass(id);
  if (cls == nullptr) return false;
  const std::size_t before = names.size();
  // Before the walk: callers get the flag of a class that lists nothing, and also when the walk throws.
  classFlag = cls->getClassFlag();
  KCOSPropertyNameVisitor visitor(&names, nullptr, selection);
  cls->visitProperties(visitor);
  return names.size() != before;
}

bool listMethods(const ResolvedClassID& id, Names& names, std::uint32_t selection) {
  kcos::COSClass* cls = KCOSIntrospection::getCOSClass(id);
  if (cls == nullptr) return false;
  const std::size_t before = names.size();
  // It checks the class, which the properties do not: methods of a broken class are not listed.
  appendMethodNames(cls, names, selection);
  return names.size() != before;
}

/// Asks by name. Whatever is thrown on the way, an interrupt too, makes the answer false, although names may
/// have been appended before it.
bool askByName(Query query, const std::u16string& className, Names& names, bool& classFlag) {
  try {
    // The conversion is inside the handler, because an unknown class is thrown, too.
    return query(ResolvedClassID::fromLegacyString(className), names, classFlag);
  } catch (...) {
    return false;
  }
}

}  // namespace

bool getClassConstantPropertyNames(const ResolvedClassID& id, Names& names, bool& classFlag) {
  return listProperties(id, names, classFlag, KCOSPropertyNameVisitor::Constant);
}

bool getClassPropertyNames(const ResolvedClassID& id, Names& names, bool& classFlag) {
  return listProperties(id, names, classFlag, KCOSPropertyNameVisitor::All);
}

bool getClassStaticMethodNames(const ResolvedClassID& id, Names& names, bool& /*classFlag*/) {
  return listMethods(id, names, KCOSMethodNameVisitor::Static);
}

bool getClassNonStaticMethodNames(const ResolvedClassID& id, Names& names, bool& /*classFlag*/) {
  return listMethods(id, names, KCOSMethodNameVisitor::NonStatic);
}

bool getClassMethodNames(const ResolvedClassID& id, Names& names, bool& /*classFlag*/) {
  return listMethods(id, names, KCOSMethodNameVisitor::All);
}

bool getClassEnumerationNames(const ResolvedClassID& id, Names& names, bool& /*classFlag*/) {
  const kcos::COSClass* cls = KCOSIntrospection::getCOSClass(id);
  if (cls == nullptr) return false;
  const std::size_t before = names.size();
  const fl::i18n::codecvt_ascii_to_ustring converter;
  // No test for an enumeration: other classes have no members to walk.
  kcos::COSIterator members = cls->getEnumerationMembers();
  while (members.hasMoreElements()) {
    const kcos::COSEnumInfo* member = kcos::cosiToEnum(members.nextElement().get());
    if (member == nullptr || member->isHidden()) continue;
    names.push_back(asciiMemberName(member->getName(), converter));
  }
  return names.size() != before;
}

bool getClassConstantPropertyNames(const std::u16string& className, Names& names, bool& classFlag) {
  return askByName(getClassConstantPropertyNames, className, names, classFlag);
}

bool getClassPropertyNames(const std::u16string& className, Names& names, bool& classFlag) {
  return askByName(getClassPropertyNames, className, names, classFlag);
}

bool getClassStaticMethodNames(const std::u16string& className, Names& names, bool& classFlag) {
  return askByName(getClassStaticMethodNames, className, names, classFlag);
}

bool getClassNonStaticMethodNames(const std::u16string& className, Names& names, bool& classFlag) {
  return askByName(getClassNonStaticMethodNames, className, names, classFlag);
}

bool getClassMethodNames(const std::u16string& className, Names& names, bool& classFlag) {
  return askByName(getClassMethodNames, className, names, classFlag);
}

bool getClassEnumerationNames(const std::u16string& className, Names& names, bool& classFlag) {
  return askByName(getClassEnumerationNames, className, names, classFlag);
}

}  // namespace KCOSContextData
