#pragma once

#include <memory>

#include "embedded/model/Element.h"
#include "embedded/model/MemberText.h"

namespace embedded {

class Routine;

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

}  // namespace embedded
