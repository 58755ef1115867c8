#pragma once

#include <memory>
#include <vector>

#include "embedded/model/DataType.h"
#include "embedded/model/Element.h"
#include "embedded/model/MemberText.h"

namespace embedded {

class Routine;

/// An attribute of a property.
class Attribute final : public kcos::COSAttribute {
 public:
  Attribute(kcos::COSInternedName name, DataType* type, bool value)
      : name_(name), type_(type), value_(value) {}

  kcos::COSInternedName name() const noexcept { return name_; }
  bool value() const noexcept { return value_; }
  kcos::COSDataTypePtr getDataType() const override;

 private:
  kcos::COSInternedName name_;
  DataType* type_;
  bool value_;
};

/// What a property record is made of.
struct PropertyContent {
  MemberText name;
  DataType* type;
  kcos::COSExtendedAccess get;
  kcos::COSExtendedAccess set;
  bool hidden;
  bool dependent;
  std::vector<Attribute> attributes;
  /// What a new object holds; null: an empty array.
  std::shared_ptr<const ValueDescription> value = nullptr;
  std::shared_ptr<const Routine> getter = nullptr;
};

/// A property as its class knows it, whatever record it answers with.
class Property : public Element {
 public:
  Property(Class& owner, PropertyContent content) : owner_(owner), content_(std::move(content)) {}

  kcos::COSInternedName name() const noexcept { return content_.name.name(); }
  Class* definingClass() const noexcept override { return &owner_; }
  const kcos::COSAttribute* findAttribute(const kcos::COSInternedName& name) const override;
  bool getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient* client) const override;

  const PropertyContent& content() const noexcept { return content_; }

 private:
  const Attribute* attribute(kcos::COSInternedName name) const noexcept;

  Class& owner_;
  PropertyContent content_;
};

std::unique_ptr<Property> makeProperty(Class& owner, PropertyContent content,
                                       const std::optional<OptimizedStorage>& optimized);

}  // namespace embedded
