#include "host/Classes.h"

#include "embedded/host/Enumeration.h"
#include "embedded/host/Session.h"

namespace embedded {

const char* Namespace::getSimpleName() const {
  return asked<Operation::namespaceGetSimpleName>(dottedName_).answer([this] {
    return simpleName_.text().c_str();
  });
}

const char* Namespace::getDottedName() const {
  return asked<Operation::namespaceGetDottedName>(dottedName_).answer([this] {
    return dottedName_.text().c_str();
  });
}

kcos::COSIterator Namespace::getFunctions() const {
  return asked<Operation::namespaceGetFunctions>(dottedName_).answer([this] {
    return enumerate(functions_);
  });
}

kcos::COSIterator Namespace::getClasses() const {
  return asked<Operation::namespaceGetClasses>(dottedName_).answer([this] { return enumerate(classes_); });
}

kcos::COSIterator Namespace::getNamespaces() const {
  return asked<Operation::namespaceGetNamespaces>(dottedName_).answer([this] {
    return enumerate(namespaces_);
  });
}

kcos::COSClass* Class::checkClass(bool complete) {
  return asked<Operation::checkClass>(names_.id, complete).answer([this] {
    return broken_ ? nullptr : this;
  });
}

kcos::COSInternedName Class::getID() const {
  return asked<Operation::classGetID>(names_.id).answer([this] { return names_.id; });
}

const char* Class::getSimpleName() const {
  return asked<Operation::classGetSimpleName>(names_.id).answer(
      [this] { return simpleName_.text().c_str(); });
}

const char* Class::getDottedName() const {
  return asked<Operation::classGetDottedName>(names_.id).answer(
      [this] { return names_.dotted.text().c_str(); });
}

kcos::COSNamespace* Class::getNamespace() const {
  return asked<Operation::classGetNamespace>(names_.id).answer([this] { return namespace_; });
}

bool Class::isEnumeration() const {
  return asked<Operation::isEnumeration>(names_.id).answer([this] { return enumeration_; });
}

bool Class::isHidden() const {
  return asked<Operation::classIsHidden>(names_.id).answer([this] { return hidden_; });
}

bool Class::getClassFlag() const {
  return asked<Operation::getClassFlag>(names_.id).answer([this] { return flag_; });
}

kcos::COSIterator Class::findMethods(const kcos::COSInternedName& name) const {
  return asked<Operation::findMethods>(names_.id, name).answer([this, &name] {
    std::vector<kcos::COSInterfacePtr> found;
    for (const Class* oneClass : lineage())
      // All of that name, in the order of the walk: clients ask the first one.
      for (Method* method : oneClass->methodsByName_.find(name)) found.emplace_back(method);
    return enumerate(std::move(found));
  });
}

kcos::COSInterfacePtr Class::findProperty(const kcos::COSInternedName& name) const {
  return asked<Operation::findProperty>(names_.id, name).answer([this, &name] { return property(name); });
}

bool Class::isDerivedFrom(const kcos::COSInternedName& base) const {
  return asked<Operation::isDerivedFrom>(names_.id, base).answer([this, &base] {
    const Class* found = session().classes.find(base);
    return found != nullptr && derivesFrom(*found);
  });
}

kcos::COSEnumeration<kcos::COSInternedName> Class::getSuperclasses() const {
  return asked<Operation::getSuperclasses>(names_.id).answer(
      [this]() -> kcos::COSEnumeration<kcos::COSInternedName> {
        // An absent sequence, not an empty one: clients have to cope with both.
        if (parts_.superclasses.empty()) return {};
        return enumerate<kcos::COSInternedName>(parts_.superclasses.size(), [this](std::size_t at) {
          return parts_.superclasses[at]->names_.id;
        });
      });
}

void Class::visitProperties(kcos::COSVisitor<kcos::COSInterface*>& visitor) const {
  return asked<Operation::visitProperties>(names_.id).answer([this, &visitor] {
    for (const Class* oneClass : lineage())
      for (const auto& property : oneClass->parts_.properties) visitor.visit(property.get());
  });
}

void Class::visitMethods(kcos::COSVisitor<kcos::COSInterface*>& visitor) const {
  return asked<Operation::visitMethods>(names_.id).answer([this, &visitor] {
    for (const Class* oneClass : lineage())
      for (const auto& method : oneClass->parts_.methods) visitor.visit(method.get());
  });
}

kcos::COSIterator Class::getEnumerationMembers() const {
  return asked<Operation::getEnumerationMembers>(names_.id).answer([this] {
    return enumerate<kcos::COSInterfacePtr>(
        members_.size(), [this](std::size_t at) { return kcos::COSInterfacePtr(members_[at].get()); });
  });
}

std::string Class::getEnumerationMemberName(const kxArray_tag* value) const {
  return asked<Operation::getEnumerationMemberName>(names_.id, value).answer([this, value] {
    const Object* object = value == nullptr ? nullptr : valueOf(value).object();
    if (object != nullptr && object->classId == names_.id && !object->member.empty()) return object->member;
    throw foundation::core::except::Exception(
        "KORVAL:class:NoEnumerationMember",
        "The value is no enumeration member of " + names_.dotted.text() + ".");
  });
}

std::vector<std::string> Class::getAttributeNames1(bool argument) const {
  return asked<Operation::getAttributeNames1>(names_.id, argument).answer([this, argument] {
    return attributeNames(0, argument);
  });
}

std::vector<std::string> Class::getAttributeNames2(bool argument) const {
  return asked<Operation::getAttributeNames2>(names_.id, argument).answer([this, argument] {
    return attributeNames(1, argument);
  });
}

std::vector<std::string> Class::getAttributeNames3(bool argument) const {
  return asked<Operation::getAttributeNames3>(names_.id, argument).answer([this, argument] {
    return attributeNames(2, argument);
  });
}

std::vector<std::string> Class::getAttributeNames4(bool argument) const {
  return asked<Operation::getAttributeNames4>(names_.id, argument).answer([this, argument] {
    return attributeNames(3, argument);
  });
}

}  // namespace embedded

using embedded::asked;
using embedded::Operation;
using embedded::valueOf;

namespace kcos {

COSClass::~COSClass() = default;
COSNamespace::~COSNamespace() = default;

COSClass* COSClass::getClass(const COSInternedName& name) {
  return asked<Operation::getClass>(name).answer([&name] { return embedded::session().classes.find(name); });
}

COSInterfacePtr COSNamespace::getNamespaceInterface(const COSInternedName& name) {
  return asked<Operation::getNamespaceInterface>(name).answer(
      [&name] { return embedded::session().classes.findNamespace(name); });
}

}  // namespace kcos

kcos::COSInternedName omGetCOSClassID(const kxArray_tag* value) {
  return asked<Operation::getCOSClassID>(value).answer(
      [value] { return value == nullptr ? kcos::COSInternedName() : valueOf(value).classId(); });
}

bool omIsKCOS(const kxArray_tag* value) {
  return asked<Operation::isKCOS>(value).answer(
      [value] { return value != nullptr && !valueOf(value).classId().isNull(); });
}

kxArray_tag* omGetArrayElement(const kxArray_tag* array, std::size_t index) {
  return asked<Operation::getArrayElement>(array, index).answer([array, index] {
    return embedded::handedOut(std::get<embedded::Objects>(valueOf(array).content()).elements.at(index));
  });
}

std::optional<std::u16string> omGetStringConversion(const kxArray_tag* object) {
  return asked<Operation::getStringConversion>(object).answer([object] {
    const embedded::Object* found = valueOf(object).object();
    if (found != nullptr && found->failing)
      throw foundation::core::except::Exception("KORVAL:class:NoTextConversion",
                                                "The object cannot be converted to text.");
    return found == nullptr ? std::nullopt : found->text;
  });
}
