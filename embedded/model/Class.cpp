#include "embedded/model/Class.h"

#include <algorithm>
#include <unordered_set>

#include "embedded/host/Session.h"
#include "embedded/model/DottedName.h"
#include "embedded/model/Interning.h"
#include "embedded/model/ListEnumerator.h"
#include "embedded/model/Value.h"

namespace embedded {

Class::Class(Names names, Namespace* inNamespace, int number, const ClassDescription& description)
    : names_(names),
      simpleName_(interned(simpleNameOf(names.dotted.text()))),
      namespace_(inNamespace),
      number_(number),
      order_(description.order),
      hidden_(description.hidden),
      broken_(description.broken),
      flag_(description.flag),
      enumeration_(description.enumeration),
      attributeNames_(description.attributeNames) {
  for (const EnumerationMemberDescription& member : description.members)
    members_.push_back(std::make_unique<EnumerationMember>(*this, member));
}

void Class::complete(Parts parts) {
  parts_ = std::move(parts);
  propertiesByName_ = NameIndex(parts_.properties);
  methodsByName_ = NameIndex(parts_.methods);
}

const std::vector<const Class*>& Class::lineage() const {
  if (!lineage_.empty()) return lineage_;
  struct Step {
    const Class* at;
    std::size_t nextSuperclass = 0;
  };
  std::vector<const Class*> line;
  std::vector<Step> way;  // from this class up: the graph can be deeper than the stack
  std::unordered_set<const Class*> met;
  const auto meet = [&](const Class* oneClass) {
    if (!met.insert(oneClass).second) return;
    if (oneClass->order_ == WalkOrder::OwnFirst) line.push_back(oneClass);
    way.push_back({oneClass});
  };
  meet(this);
  while (!way.empty()) {
    Step& step = way.back();
    if (step.nextSuperclass < step.at->parts_.superclasses.size()) {
      meet(step.at->parts_.superclasses[step.nextSuperclass++]);
    } else {
      if (step.at->order_ == WalkOrder::InheritedFirst) line.push_back(step.at);
      way.pop_back();
    }
  }
  return lineage_ = std::move(line);
}

bool Class::derivesFrom(const Class& base) const {
  return std::ranges::find(lineage(), &base) != lineage().end();
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
    for (Method* method : oneClass->methodsByName_.find(name)) found.emplace_back(method);
  return enumerate(std::move(found));
}

kcos::COSInterfacePtr Class::findProperty(const kcos::COSInternedName& name) const {
  enter<Operation::findProperty>(names_.id, name);
  return property(name);
}

Property* Class::property(kcos::COSInternedName name) const {
  if (const auto own = propertiesByName_.find(name); !own.empty()) return own.front();
  for (const Class* oneClass : lineage())
    if (const auto found = oneClass->propertiesByName_.find(name); !found.empty()) return found.front();
  return nullptr;
}

const Method* Class::method(kcos::COSInternedName name) const {
  const auto among = [](std::span<Method* const> methods) {
    const auto callable = std::ranges::find_if(
        methods, [](const Method* method) { return method->content().routine != nullptr; });
    return callable == methods.end() ? methods.front() : *callable;
  };
  if (const auto own = methodsByName_.find(name); !own.empty()) return among(own);
  for (const Class* oneClass : lineage())
    if (const auto found = oneClass->methodsByName_.find(name); !found.empty()) return among(found);
  return nullptr;
}

const EnumerationMember* Class::member(kcos::COSInternedName name) const noexcept {
  for (const auto& member : members_)
    if (member->name() == name && !name.isNull()) return member.get();
  return nullptr;
}

bool Class::isDerivedFrom(const kcos::COSInternedName& base) const {
  enter<Operation::isDerivedFrom>(names_.id, base);
  const Class* found = session().classes.find(base);
  return found != nullptr && derivesFrom(*found);
}

kcos::COSEnumeration<kcos::COSInternedName> Class::getSuperclasses() const {
  enter<Operation::getSuperclasses>(names_.id);
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

std::vector<std::string> Class::attributeNames(std::size_t list, bool argument) const {
  std::vector<std::string> names = attributeNames_[list].names;
  const std::vector<std::string>& further = attributeNames_[list].further;
  if (argument) names.insert(names.end(), further.begin(), further.end());
  return names;
}

}  // namespace embedded

namespace kcos {

COSClass::~COSClass() = default;

COSClass* COSClass::getClass(const COSInternedName& name) {
  embedded::enter<embedded::Operation::getClass>(name);
  return embedded::session().classes.find(name);
}

}  // namespace kcos
