#pragma once

// Namespaces and classes. What the library asks of them is defined in embedded/host/Classes.cpp.

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "embedded/model/Members.h"

namespace embedded {

class Namespace final : public Element, public kcos::COSNamespace {
 public:
  using Elements = std::vector<kcos::COSInterfacePtr>;

  explicit Namespace(kcos::COSInternedName dottedName)
      : dottedName_(dottedName), simpleName_(interned(simpleNameOf(dottedName.text()))) {}

  kcos::COSNamespace* asNamespace() noexcept override { return this; }

  const char* getSimpleName() const override;
  const char* getDottedName() const override;
  kcos::COSIterator getFunctions() const override;
  kcos::COSIterator getClasses() const override;
  kcos::COSIterator getNamespaces() const override;

  void addFunction(kcos::COSInterface& function) { functions_.emplace_back(&function); }
  void addClass(kcos::COSInterface& oneClass) { classes_.emplace_back(&oneClass); }
  void addNamespace(kcos::COSInterface& inner) { namespaces_.emplace_back(&inner); }

 private:
  kcos::COSInternedName dottedName_;
  kcos::COSInternedName simpleName_;
  Elements functions_;
  Elements classes_;
  Elements namespaces_;
};

/// The members of one class by name; those of one name in their own order. Members without a name are not found.
template <class Member>
class NameIndex {
 public:
  NameIndex() = default;
  explicit NameIndex(const std::vector<std::unique_ptr<Member>>& members) {
    for (const auto& member : members)
      if (!member->name().isNull()) members_.push_back(member.get());
    std::ranges::stable_sort(members_, std::less(), handle);
  }

  std::span<Member* const> find(kcos::COSInternedName name) const {
    const auto first = std::ranges::lower_bound(members_, &name.text(), std::less(), handle);
    return {first, std::ranges::upper_bound(first, members_.end(), &name.text(), std::less(), handle)};
  }

 private:
  // Equal names are one handle, so that its address orders as well as the text and costs less.
  static const std::string* handle(const Member* member) { return &member->name().text(); }

  std::vector<Member*> members_;
};

class Class final : public Element, public kcos::COSClass {
 public:
  struct Names {
    kcos::COSInternedName id;
    kcos::COSInternedName dotted;
    kcos::COSInternedName component;
  };

  /// The class's own part: its superclasses and members come with complete().
  Class(Names names, Namespace* inNamespace, int number, const ClassDescription& description);

  struct Parts {
    std::vector<Class*> superclasses;
    std::vector<std::unique_ptr<Property>> properties;
    std::vector<std::unique_ptr<Method>> methods;
  };
  void complete(Parts parts);

  const Names& names() const noexcept { return names_; }
  /// Its number in the registry.
  int number() const noexcept { return number_; }
  bool derivesFrom(const Class& base) const;
  const std::string& simpleName() const noexcept { return simpleName_.text(); }
  const EnumerationMember* member(kcos::COSInternedName name) const noexcept;

  // Own and inherited ones, the first of that name, of methods rather one with code; null when there is none.
  Property* property(kcos::COSInternedName name) const;
  const Method* method(kcos::COSInternedName name) const;

  /// The class and all its ancestors, each once, in the order of its member walks. Made anew each time: kept for every
  /// class, those of a long chain would take memory by the square of its length.
  std::vector<const Class*> lineage() const;
  const Parts& parts() const noexcept { return parts_; }
  bool enumeration() const noexcept { return enumeration_; }
  const std::vector<std::unique_ptr<EnumerationMember>>& members() const noexcept { return members_; }

  kcos::COSClass* asClass() noexcept override { return this; }

  COSClass* checkClass(bool complete) override;
  kcos::COSInternedName getID() const override;
  const char* getSimpleName() const override;
  const char* getDottedName() const override;
  kcos::COSNamespace* getNamespace() const override;
  bool isEnumeration() const override;
  bool isHidden() const override;
  bool getClassFlag() const override;
  kcos::COSIterator findMethods(const kcos::COSInternedName& name) const override;
  kcos::COSInterfacePtr findProperty(const kcos::COSInternedName& name) const override;
  bool isDerivedFrom(const kcos::COSInternedName& base) const override;
  kcos::COSEnumeration<kcos::COSInternedName> getSuperclasses() const override;
  void visitProperties(kcos::COSVisitor<kcos::COSInterface*>& visitor) const override;
  void visitMethods(kcos::COSVisitor<kcos::COSInterface*>& visitor) const override;
  kcos::COSIterator getEnumerationMembers() const override;
  std::string getEnumerationMemberName(const kxArray_tag* value) const override;
  std::vector<std::string> getAttributeNames1(bool argument) const override;
  std::vector<std::string> getAttributeNames2(bool argument) const override;
  std::vector<std::string> getAttributeNames3(bool argument) const override;
  std::vector<std::string> getAttributeNames4(bool argument) const override;

 private:
  std::vector<std::string> attributeNames(std::size_t list, bool argument) const;

  Names names_;
  kcos::COSInternedName simpleName_;
  Namespace* namespace_;
  int number_;
  WalkOrder order_;
  bool hidden_;
  bool broken_;
  bool flag_;
  bool enumeration_;
  std::vector<std::unique_ptr<EnumerationMember>> members_;
  std::array<AttributeNames, 4> attributeNames_;
  Parts parts_;
  NameIndex<Property> propertiesByName_;
  NameIndex<Method> methodsByName_;
  /// The latest walk that has met the class.
  mutable std::uint64_t metBy_ = 0;
};

}  // namespace embedded
