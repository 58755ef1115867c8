#include "host/Members.h"

#include "embedded/host/Gate.h"
#include "embedded/model/Class.h"
#include "embedded/model/Members.h"

namespace embedded {

namespace {

/// What a member says of itself, after the gate of that operation.
template <Operation operation, class Answer>
const Answer& told(const MemberText& member, const Answer& answer) {
  enter<operation>(member.text());
  return answer;
}

}  // namespace

const kcos::COSAttribute* Element::findAttribute(const kcos::COSInternedName& name) const {
  enter<Operation::findAttribute>(name);
  return nullptr;
}

bool Element::getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient*) const {
  enter<Operation::getAttributeValue>(name);
  return false;
}

const char* EnumerationMember::getName() const { return told<Operation::enumGetName>(name_, name_.text()); }

bool EnumerationMember::isHidden() const { return told<Operation::enumIsHidden>(name_, hidden_); }

const char* Method::getName() const {
  return told<Operation::methodGetName>(content_.name, content_.name.text());
}

bool Method::isStatic() const { return told<Operation::methodIsStatic>(content_.name, content_.isStatic); }

bool Method::isVisible() const { return told<Operation::methodIsVisible>(content_.name, content_.visible); }

bool Method::isHidden() const { return told<Operation::methodIsHidden>(content_.name, content_.hidden); }

kcos::MemberAccess Method::getMemberAccess() const {
  return told<Operation::getMemberAccess>(content_.name, content_.access.level);
}

kcos::COSExtendedAccess Method::getExtendedAccess() const {
  return told<Operation::getExtendedAccess>(content_.name, content_.access);
}

kcos::COSDataTypePtr Attribute::getDataType() const {
  enter<Operation::attributeGetDataType>(name_);
  return type_;
}

const kcos::COSAttribute* Property::findAttribute(const kcos::COSInternedName& name) const {
  enter<Operation::findAttribute>(content_.name.name(), name);
  return attribute(name);
}

bool Property::getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient*) const {
  enter<Operation::getAttributeValue>(content_.name.name(), name);
  const Attribute* found = attribute(name);
  return found != nullptr && found->value();
}

namespace {

/// A property whose record is of that type.
template <class Record>
class PropertyAs : public Property, public Record {
 public:
  using Property::Property;

  kcos::COSPropInfo* asProperty() noexcept override { return this; }

  const char* getName() const override {
    return told<Operation::propGetName>(content().name, content().name.text());
  }
  kcos::COSDataTypePtr getDataType() const override {
    return told<Operation::propGetDataType>(content().name, content().type);
  }
  bool isVisible() const override {
    // Properties have one word for both: a hidden one is not visible.
    return told<Operation::propIsVisible>(content().name, !content().hidden);
  }
  bool isDependent() const override {
    return told<Operation::propIsDependent>(content().name, content().dependent);
  }
  kcos::MemberAccess getMemberGetAccess() const override {
    return told<Operation::getMemberGetAccess>(content().name, content().get.level);
  }
  kcos::MemberAccess getMemberSetAccess() const override {
    return told<Operation::getMemberSetAccess>(content().name, content().set.level);
  }
  kcos::COSExtendedAccess getExtendedGetAccess() const override {
    return told<Operation::getExtendedGetAccess>(content().name, content().get);
  }
  kcos::COSExtendedAccess getExtendedSetAccess() const override {
    return told<Operation::getExtendedSetAccess>(content().name, content().set);
  }

  using Property::content;
};

class OptimizedProperty final : public PropertyAs<kcos::COSOptimizedPropInfo> {
 public:
  OptimizedProperty(Class& owner, PropertyContent content, OptimizedStorage storage)
      : PropertyAs(owner, std::move(content)), storage_(storage) {}

  bool hasCustomGetter() const override {
    return told<Operation::hasCustomGetter>(content().name, storage_.customGetter);
  }
  bool getOptimizedFlag() const override {
    return told<Operation::getOptimizedFlag>(content().name, storage_.flag);
  }

 private:
  OptimizedStorage storage_;
};

}  // namespace

std::unique_ptr<Property> makeProperty(Class& owner, PropertyContent content,
                                       const std::optional<OptimizedStorage>& optimized) {
  // Only this record tells that reading runs a get method, so a property with one has it, however it is declared.
  const bool hasGetter = content.getter != nullptr;
  if (optimized || hasGetter) {
    OptimizedStorage storage = optimized.value_or(OptimizedStorage());
    storage.customGetter = storage.customGetter || hasGetter;
    return std::make_unique<OptimizedProperty>(owner, std::move(content), storage);
  }
  return std::make_unique<PropertyAs<kcos::COSPropInfo>>(owner, std::move(content));
}

}  // namespace embedded

using embedded::Element;
using embedded::enter;
using embedded::Operation;

namespace kcos {

template <class T>
COSVisitor<T>::~COSVisitor() = default;
template class COSVisitor<COSInterface*>;

COSInterface::~COSInterface() = default;
COSAttribute::~COSAttribute() = default;
COSPropT::~COSPropT() = default;
COSPropInfo::~COSPropInfo() = default;
COSOptimizedPropInfo::~COSOptimizedPropInfo() = default;
COSMethodBase::~COSMethodBase() = default;
COSMethodInfo::~COSMethodInfo() = default;
COSEnumInfo::~COSEnumInfo() = default;

namespace {

// All interfaces that the host hands out are elements.
Element* elementOf(COSInterface* interface) { return static_cast<Element*>(interface); }

}  // namespace

COSPropInfo* cosiToProp(COSInterface* interface) {
  enter<Operation::cosiToProp>();
  return interface == nullptr ? nullptr : elementOf(interface)->asProperty();
}

COSMethodInfo* cosiToMethod(COSInterface* interface) {
  enter<Operation::cosiToMethod>();
  return interface == nullptr ? nullptr : elementOf(interface)->asMethod();
}

COSEnumInfo* cosiToEnum(COSInterface* interface) {
  enter<Operation::cosiToEnum>();
  return interface == nullptr ? nullptr : elementOf(interface)->asEnumerationMember();
}

COSClass* cosiToClass(COSInterface* interface) {
  enter<Operation::cosiToClass>();
  return interface == nullptr ? nullptr : elementOf(interface)->asClass();
}

COSNamespace* cosiToNamespace(COSInterface* interface) {
  enter<Operation::cosiToNamespace>();
  return interface == nullptr ? nullptr : elementOf(interface)->asNamespace();
}

COSClass* cosiClassOfMember(COSInterface* member) {
  enter<Operation::cosiClassOfMember>();
  return member == nullptr ? nullptr : elementOf(member)->definingClass();
}

}  // namespace kcos

/// There is one client, and it needs no more than an address.
class kcos::COSClient {};

const kcos::COSClient* COSGetPublicClient() {
  enter<Operation::getPublicClient>();
  static constexpr kcos::COSClient everybody;
  return &everybody;
}
