#pragma once

#include "embedded/Description.h"
#include "embedded/model/Interning.h"

namespace embedded {

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

}  // namespace embedded
