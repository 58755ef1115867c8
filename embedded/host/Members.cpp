#include "host/Members.h"

#include "embedded/host/Gate.h"
#include "embedded/model/Class.h"
#include "embedded/model/Members.h"

namespace embedded {

const kcos::COSAttribute* Element::findAttribute(const kcos::COSInternedName& name) const {
  return asked<Operation::findAttribute>(name).answer([] { return nullptr; });
}

bool Element::getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient*) const {
  return asked<Operation::getAttributeValue>(name).answer([] { return false; });
}

const char* EnumerationMember::getName() const {
  return asked<Operation::enumGetName>(name_).answer([this] { return name_.text(); });
}

bool EnumerationMember::isHidden() const {
  return asked<Operation::enumIsHidden>(name_).answer([this] { return hidden_; });
}

const char* Method::getName() const {
  return asked<Operation::methodGetName>(content_.name).answer([this] { return content_.name.text(); });
}

bool Method::isStatic() const {
  return asked<Operation::methodIsStatic>(content_.name).answer([this] { return content_.isStatic; });
}

bool Method::isVisible() const {
  return asked<Operation::methodIsVisible>(content_.name).answer([this] { return content_.visible; });
}

bool Method::isHidden() const {
  return asked<Operation::methodIsHidden>(content_.name).answer([this] { return content_.hidden; });
}

kcos::MemberAccess Method::getMemberAccess() const {
  return asked<Operation::getMemberAccess>(content_.name).answer([this] { return content_.access.level; });
}

kcos::COSExtendedAccess Method::getExtendedAccess() const {
  return asked<Operation::getExtendedAccess>(content_.name).answer([this] { return content_.access; });
}

kcos::COSDataTypePtr Attribute::getDataType() const {
  return asked<Operation::attributeGetDataType>(name_).answer([this] { return type_; });
}

const kcos::COSAttribute* Property::findAttribute(const kcos::COSInternedName& name) const {
  return asked<Operation::findAttribute>(content_.name.name(), name).answer([this, &name] {
    return attribute(name);
  });
}

bool Property::getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient*) const {
  return asked<Operation::getAttributeValue>(content_.name.name(), name).answer([this, &name] {
    const Attribute* found = attribute(name);
    return found != nullptr && found->value();
  });
}

namespace {

/// A property whose record is of that type.
template <class Record>
class PropertyAs : public Property, public Record {
 public:
  using Property::Property;

  kcos::COSPropInfo* asProperty() noexcept override { return this; }

  const char* getName() const override {
    return asked<Operation::propGetName>(content().name).answer([this] { return content().name.text(); });
  }
  kcos::COSDataTypePtr getDataType() const override {
    return asked<Operation::propGetDataType>(content().name).answer([this] { return content().type; });
  }
  bool isVisible() const override {
    // Properties have one word for both: a hidden one is not visible.
    return asked<Operation::propIsVisible>(content().name).answer([this] { return !content().hidden; });
  }
  bool isDependent() const override {
    return asked<Operation::propIsDependent>(content().name).answer([this] { return content().dependent; });
  }
  kcos::MemberAccess getMemberGetAccess() const override {
    return asked<Operation::getMemberGetAccess>(content().name).answer([this] {
      return content().get.level;
    });
  }
  kcos::MemberAccess getMemberSetAccess() const override {
    return asked<Operation::getMemberSetAccess>(content().name).answer([this] {
      return content().set.level;
    });
  }
  kcos::COSExtendedAccess getExtendedGetAccess() const override {
    return asked<Operation::getExtendedGetAccess>(content().name).answer([this] { return content().get; });
  }
  kcos::COSExtendedAccess getExtendedSetAccess() const override {
    return asked<Operation::getExtendedSetAccess>(content().name).answer([this] { return content().set; });
  }

  using Property::content;
};

class OptimizedProperty final : public PropertyAs<kcos::COSOptimizedPropInfo> {
 public:
  OptimizedProperty(Class& owner, PropertyContent content, OptimizedStorage storage)
      : PropertyAs(owner, std::move(content)), storage_(storage) {}

  bool hasCustomGetter() const override {
    return asked<Operation::hasCustomGetter>(content().name).answer([this] { return storage_.customGetter; });
  }
  bool getOptimizedFlag() const override {
    return asked<Operation::getOptimizedFlag>(content().name).answer([this] { return storage_.flag; });
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

using embedded::asked;
using embedded::Element;
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
  return asked<Operation::cosiToProp>().answer(
      [interface] { return interface == nullptr ? nullptr : elementOf(interface)->asProperty(); });
}

COSMethodInfo* cosiToMethod(COSInterface* interface) {
  return asked<Operation::cosiToMethod>().answer(
      [interface] { return interface == nullptr ? nullptr : elementOf(interface)->asMethod(); });
}

COSEnumInfo* cosiToEnum(COSInterface* interface) {
  return asked<Operation::cosiToEnum>().answer(
      [interface] { return interface == nullptr ? nullptr : elementOf(interface)->asEnumerationMember(); });
}

COSClass* cosiToClass(COSInterface* interface) {
  return asked<Operation::cosiToClass>().answer(
      [interface] { return interface == nullptr ? nullptr : elementOf(interface)->asClass(); });
}

COSNamespace* cosiToNamespace(COSInterface* interface) {
  return asked<Operation::cosiToNamespace>().answer(
      [interface] { return interface == nullptr ? nullptr : elementOf(interface)->asNamespace(); });
}

COSClass* cosiClassOfMember(COSInterface* member) {
  return asked<Operation::cosiClassOfMember>().answer(
      [member] { return member == nullptr ? nullptr : elementOf(member)->definingClass(); });
}

}  // namespace kcos

/// There is one client, and it needs no more than an address.
class kcos::COSClient {};

const kcos::COSClient* COSGetPublicClient() {
  return asked<Operation::getPublicClient>().answer([] {
    static constexpr kcos::COSClient everybody;
    return &everybody;
  });
}
