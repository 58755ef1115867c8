#pragma once

#include "embedded/Description.h"
#include "host/DataTypes.h"

/// A value of a finite set: what a conversion makes an array of.
class kcos::COSPossibleValue {
 public:
  explicit COSPossibleValue(embedded::ValueDescription description) : description_(std::move(description)) {}

  const embedded::ValueDescription& description() const noexcept { return description_; }

 private:
  embedded::ValueDescription description_;
};
