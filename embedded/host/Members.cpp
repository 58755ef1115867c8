#include "host/Members.h"

#include "embedded/host/Gate.h"
#include "embedded/model/Class.h"
#include "embedded/model/Members.h"

namespace embedded {

const kcos::COSAttribute* Element::findAttribute(const kcos::COSInternedName& name) const {
  enter<Operation::findAttribute>(name);
  return nullptr;
}

bool Element::getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient*) const {
  enter<Operation::getAttributeValue>(name);
  return false;
}

const char* EnumerationMember::getName() const {
  enter<Operation::enumGetName>(name_.text());
  return name_.text();
}

bool EnumerationMember::isHidden() const {
  enter<Operation::enumIsHidden>(name_.text());
  return hidden_;
}

const char* Method::getName() const {
  enter<Operation::methodGetName>(content_.name.text());
  return content_.name.text();
}

bool Method::isStatic() const {
  enter<Operation::methodIsStatic>(content_.name.text());
  return content_.isStatic;
}

bool Method::isVisible() const {
  enter<Operation::methodIsVisible>(content_.name.text());
  return content_.visible;
}

bool Method::isHidden() const {
  enter<Operation::methodIsHidden>(content_.name.text());
  return content_.hidden;
}

kcos::MemberAccess Method::getMemberAccess() const {
  enter<Operation::getMemberAccess>(content_.name.text());
  return content_.access.level;
}

kcos::COSExtendedAccess Method::getExtendedAccess() const {
  enter<Operation::getExtendedAccess>(content_.name.text());
  return content_.access;
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
    enter<Operation::propGetName>(content().name.text());
    return content().name.text();
  }
  kcos::COSDataTypePtr getDataType() const override {
    enter<Operation::propGetDataType>(content().name.text());
    return content().type;
  }
  bool isVisible() const override {
    enter<Operation::propIsVisible>(content().name.text());
    // Properties have one word for both: a hidden one is not visible.
    return !content().hidden;
  }
  bool isDependent() const override {
    enter<Operation::propIsDependent>(content().name.text());
    return content().dependent;
  }
  kcos::MemberAccess getMemberGetAccess() const override {
    enter<Operation::getMemberGetAccess>(content().name.text());
    return content().get.level;
  }
  kcos::MemberAccess getMemberSetAccess() const override {
    enter<Operation::getMemberSetAccess>(content().name.text());
    return content().set.level;
  }
  kcos::COSExtendedAccess getExtendedGetAccess() const override {
    enter<Operation::getExtendedGetAccess>(content().name.text());
    return content().get;
  }
  kcos::COSExtendedAccess getExtendedSetAccess() const override {
    enter<Operation::getExtendedSetAccess>(content().name.text());
    return content().set;
  }

  using Property::content;
};

class OptimizedProperty final : public PropertyAs<kcos::COSOptimizedPropInfo> {
 public:
  OptimizedProperty(Class& owner, PropertyContent content, OptimizedStorage storage)
      : PropertyAs(owner, std::move(content)), storage_(storage) {}

  bool hasCustomGetter() const override {
    enter<Operation::hasCustomGetter>(content().name.text());
    return storage_.customGetter;
  }
  bool getOptimizedFlag() const override {
    enter<Operation::getOptimizedFlag>(content().name.text());
    return storage_.flag;
  }

 private:
  OptimizedStorage storage_;
};

}  // namespace

std::unique_ptr<Property> makeProperty(Class& owner, PropertyContent content,
                                       const std::optional<OptimizedStorage>& optimized) {
  if (optimized) return std::make_unique<OptimizedProperty>(owner, std::move(content), *optimized);
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
