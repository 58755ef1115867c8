#pragma once

// The members of classes. What the library asks of them is defined in embedded/host/Members.cpp.

#include <memory>
#include <vector>

#include "embedded/Description.h"
#include "embedded/model/DataTypes.h"
#include "embedded/model/Names.h"
#include "host/Classes.h"
#include "host/Members.h"

namespace embedded {

class Class;
class Routine;

/// Every interface that this host hands out: an element is of the one kind for which it does not return null.
class Element : public kcos::COSInterface {
 public:
  virtual kcos::COSPropInfo* asProperty() noexcept { return nullptr; }
  virtual kcos::COSMethodInfo* asMethod() noexcept { return nullptr; }
  virtual kcos::COSEnumInfo* asEnumerationMember() noexcept { return nullptr; }
  virtual kcos::COSClass* asClass() noexcept { return nullptr; }
  virtual kcos::COSNamespace* asNamespace() noexcept { return nullptr; }
  /// The class that defines a member.
  virtual Class* definingClass() const noexcept { return nullptr; }

  // Only properties carry attributes.
  const kcos::COSAttribute* findAttribute(const kcos::COSInternedName& name) const override;
  bool getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient* client) const override;
};

/// The name of a member, which may be missing.
class MemberText {
 public:
  explicit MemberText(const MemberName& name) : missing_(!name), name_(interned(name.value_or(""))) {}

  /// The null name when it is missing.
  kcos::COSInternedName name() const noexcept { return name_; }
  const char* text() const noexcept { return missing_ ? nullptr : name_.text().c_str(); }

 private:
  bool missing_;
  kcos::COSInternedName name_;
};

class EnumerationMember final : public Element, public kcos::COSEnumInfo {
 public:
  EnumerationMember(Class& owner, const EnumerationMemberDescription& description)
      : owner_(owner), name_(description.name), hidden_(description.hidden) {}

  /// The null name when it is missing.
  kcos::COSInternedName name() const noexcept { return name_.name(); }
  bool hidden() const noexcept { return hidden_; }

  kcos::COSEnumInfo* asEnumerationMember() noexcept override { return this; }
  Class* definingClass() const noexcept override { return &owner_; }

  const char* getName() const override;
  bool isHidden() const override;

 private:
  Class& owner_;
  MemberText name_;
  bool hidden_;
};

/// What a method record is made of.
struct MethodContent {
  MemberText name;
  kcos::COSExtendedAccess access;
  bool isStatic;
  bool hidden;
  bool visible;
  std::shared_ptr<const Routine> routine = nullptr;
};

/// A method of a class, or a function of a namespace, which no class defines.
class Method final : public Element, public kcos::COSMethodInfo {
 public:
  Method(Class* owner, MethodContent content) : owner_(owner), content_(std::move(content)) {}

  kcos::COSInternedName name() const noexcept { return content_.name.name(); }
  kcos::COSMethodInfo* asMethod() noexcept override { return this; }
  Class* definingClass() const noexcept override { return owner_; }
  const MethodContent& content() const noexcept { return content_; }

  const char* getName() const override;
  bool isStatic() const override;
  bool isVisible() const override;
  bool isHidden() const override;
  kcos::MemberAccess getMemberAccess() const override;
  kcos::COSExtendedAccess getExtendedAccess() const override;

 private:
  Class* owner_;
  MethodContent content_;
};

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

/// A property as its class knows it, whatever type its record has.
class Property : public Element {
 public:
  Property(Class& owner, PropertyContent content) : owner_(owner), content_(std::move(content)) {}

  kcos::COSInternedName name() const noexcept { return content_.name.name(); }
  Class* definingClass() const noexcept override { return &owner_; }
  const kcos::COSAttribute* findAttribute(const kcos::COSInternedName& name) const override;
  bool getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient* client) const override;

  const PropertyContent& content() const noexcept { return content_; }

 private:
  const Attribute* attribute(kcos::COSInternedName name) const noexcept {
    for (const Attribute& attribute : content_.attributes)
      if (attribute.name() == name) return &attribute;
    return nullptr;
  }

  Class& owner_;
  PropertyContent content_;
};

/// The property with its record, whose type depends on whether its storage is optimised.
std::unique_ptr<Property> makeProperty(Class& owner, PropertyContent content,
                                       const std::optional<OptimizedStorage>& optimized);

}  // namespace embedded
