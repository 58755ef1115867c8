#pragma once

#include "host/Classes.h"
#include "host/Members.h"

namespace embedded {

class Class;

/// Every interface that this host hands out: an element is of the one kind for which it does not answer null.
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

}  // namespace embedded
