#include "embedded/model/Property.h"

#include "embedded/host/Gate.h"

namespace embedded {

kcos::COSDataTypePtr Attribute::getDataType() const {
  enter<Operation::attributeGetDataType>(name_);
  return type_;
}

const Attribute* Property::attribute(kcos::COSInternedName name) const noexcept {
  for (const Attribute& attribute : content_.attributes)
    if (attribute.name() == name) return &attribute;
  return nullptr;
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

/// A property that answers with that type of record.
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

namespace kcos {

COSAttribute::~COSAttribute() = default;
COSPropT::~COSPropT() = default;
COSPropInfo::~COSPropInfo() = default;
COSOptimizedPropInfo::~COSOptimizedPropInfo() = default;

}  // namespace kcos
