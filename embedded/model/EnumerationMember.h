#pragma once

#include "embedded/model/Element.h"
#include "embedded/model/MemberText.h"

namespace embedded {

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

}  // namespace embedded
