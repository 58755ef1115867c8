#pragma once

#include "embedded/Description.h"
#include "host/DataTypes.h"

namespace embedded {

class Validation final : public kcos::COSValidationType {
 public:
  explicit Validation(ValidationDescription description) : description_(std::move(description)) {}

  std::string getClassName() const override;
  kcos::COSEnumeration<kcos::COSValidationDimension> getDimensions() const override;
  kcos::COSEnumeration<kcos::COSValidationFunction> getFunctions() const override;

 private:
  ValidationDescription description_;
};

}  // namespace embedded
