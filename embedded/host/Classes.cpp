#include "host/Classes.h"

#include "embedded/host/Enumeration.h"
#include "embedded/host/Session.h"

namespace embedded {

const char* Namespace::getSimpleName() const {
  enter<Operation::namespaceGetSimpleName>(dottedName_);
  return simpleName_.text().c_str();
}

const char* Namespace::getDottedName() const {
  enter<Operation::namespaceGetDottedName>(dottedName_);
  return dottedName_.text().c_str();
}

kcos::COSIterator Namespace::getFunctions() const {
  enter<Operation::namespaceGetFunctions>(dottedName_);
  return enumerate(functions_);
}

kcos::COSIterator Namespace::getClasses() const {
  enter<Operation::namespaceGetClasses>(dottedName_);
  return enumerate(classes_);
}

kcos::COSIterator Namespace::getNamespaces() const {
  enter<Operation::namespaceGetNamespaces>(dottedName_);
  return enumerate(namespaces_);
}

kcos::COSClass* Class::checkClass(bool complete) {
  enter<Operation::checkClass>(names_.id, complete);
  return broken_ ? nullptr : this;
}

kcos::COSInternedName Class::getID() const {
  enter<Operation::classGetID>(names_.id);
  return names_.id;
}

const char* Class::getSimpleName() const {
  enter<Operation::classGetSimpleName>(names_.id);
  return simpleName_.text().c_str();
}

const char* Class::getDottedName() const {
  enter<Operation::classGetDottedName>(names_.id);
  return names_.dotted.text().c_str();
}

kcos::COSNamespace* Class::getNamespace() const {
  enter<Operation::classGetNamespace>(names_.id);
  return namespace_;
}

bool Class::isEnumeration() const {
  enter<Operation::isEnumeration>(names_.id);
  return enumeration_;
}

bool Class::isHidden() const {
  enter<Operation::classIsHidden>(names_.id);
  return hidden_;
}

bool Class::getClassFlag() const {
  enter<Operation::getClassFlag>(names_.id);
  return flag_;
}

kcos::COSIterator Class::findMethods(const kcos::COSInternedName& name) const {
  enter<Operation::findMethods>(names_.id, name);
  std::vector<kcos::COSInterfacePtr> found;
  for (const Class* oneClass : lineage())
    // All of that name, in the order of the walk: clients ask the first one.
    for (Method* method : oneClass->methodsByName_.find(name)) found.emplace_back(method);
  return enumerate(std::move(found));
}

kcos::COSInterfacePtr Class::findProperty(const kcos::COSInternedName& name) const {
  enter<Operation::findProperty>(names_.id, name);
  return property(name);
}

bool Class::isDerivedFrom(const kcos::COSInternedName& base) const {
  enter<Operation::isDerivedFrom>(names_.id, base);
  const Class* found = session().classes.find(base);
  return found != nullptr && derivesFrom(*found);
}

kcos::COSEnumeration<kcos::COSInternedName> Class::getSuperclasses() const {
  enter<Operation::getSuperclasses>(names_.id);
  // An absent sequence, not an empty one: clients have to cope with both.
  if (parts_.superclasses.empty()) return {};
  std::vector<kcos::COSInternedName> names;
  for (const Class* superclass : parts_.superclasses) names.push_back(superclass->names_.id);
  return enumerate(std::move(names));
}

void Class::visitProperties(kcos::COSVisitor<kcos::COSInterface*>& visitor) const {
  enter<Operation::visitProperties>(names_.id);
  for (const Class* oneClass : lineage())
    for (const auto& property : oneClass->parts_.properties) visitor.visit(property.get());
}

void Class::visitMethods(kcos::COSVisitor<kcos::COSInterface*>& visitor) const {
  enter<Operation::visitMethods>(names_.id);
  for (const Class* oneClass : lineage())
    for (const auto& method : oneClass->parts_.methods) visitor.visit(method.get());
}

kcos::COSIterator Class::getEnumerationMembers() const {
  enter<Operation::getEnumerationMembers>(names_.id);
  std::vector<kcos::COSInterfacePtr> members;
  for (const auto& member : members_) members.emplace_back(member.get());
  return enumerate(std::move(members));
}

std::string Class::getEnumerationMemberName(const kxArray_tag* value) const {
  enter<Operation::getEnumerationMemberName>(names_.id, value);
  const Object* object = value == nullptr ? nullptr : valueOf(value).object();
  if (object != nullptr && object->classId == names_.id && !object->member.empty()) return object->member;
  throw foundation::core::except::Exception(
      "KORVAL:class:NoEnumerationMember",
      "The value is no enumeration member of " + names_.dotted.text() + ".");
}

std::vector<std::string> Class::getAttributeNames1(bool argument) const {
  enter<Operation::getAttributeNames1>(names_.id, argument);
  return attributeNames(0, argument);
}

std::vector<std::string> Class::getAttributeNames2(bool argument) const {
  enter<Operation::getAttributeNames2>(names_.id, argument);
  return attributeNames(1, argument);
}

std::vector<std::string> Class::getAttributeNames3(bool argument) const {
  enter<Operation::getAttributeNames3>(names_.id, argument);
  return attributeNames(2, argument);
}

std::vector<std::string> Class::getAttributeNames4(bool argument) const {
  enter<Operation::getAttributeNames4>(names_.id, argument);
  return attributeNames(3, argument);
}

}  // namespace embedded

using embedded::enter;
using embedded::Operation;
using embedded::valueOf;

namespace kcos {

COSClass::~COSClass() = default;
COSNamespace::~COSNamespace() = default;

COSClass* COSClass::getClass(const COSInternedName& name) {
  enter<Operation::getClass>(name);
  return embedded::session().classes.find(name);
}

COSInterfacePtr COSNamespace::getNamespaceInterface(const COSInternedName& name) {
  enter<Operation::getNamespaceInterface>(name);
  return embedded::session().classes.findNamespace(name);
}

}  // namespace kcos

kcos::COSInternedName omGetCOSClassID(const kxArray_tag* value) {
  enter<Operation::getCOSClassID>(value);
  return value == nullptr ? kcos::COSInternedName() : valueOf(value).classId();
}

bool omIsKCOS(const kxArray_tag* value) {
  enter<Operation::isKCOS>(value);
  return value != nullptr && !valueOf(value).classId().isNull();
}

kxArray_tag* omGetArrayElement(const kxArray_tag* array, std::size_t index) {
  enter<Operation::getArrayElement>(array, index);
  return embedded::handedOut(std::get<embedded::Objects>(valueOf(array).content()).elements.at(index));
}

std::optional<std::u16string> omGetStringConversion(const kxArray_tag* object) {
  enter<Operation::getStringConversion>(object);
  const embedded::Object* found = valueOf(object).object();
  if (found != nullptr && found->failing)
    throw foundation::core::except::Exception("KORVAL:class:NoTextConversion",
                                              "The object cannot be converted to text.");
  return found == nullptr ? std::nullopt : found->text;
}
