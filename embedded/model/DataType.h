#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "embedded/model/PossibleValue.h"
#include "embedded/model/Validation.h"

namespace embedded {

/// A data type: a name, and what properties of it may hold. Types of one name can differ in the latter.
class DataType final : public kcos::COSDataType {
 public:
  /// Allows every value.
  explicit DataType(kcos::COSInternedName id) : id_(id) {}
  DataType(kcos::COSInternedName id, std::optional<Validation> validation,
           std::optional<std::vector<kcos::COSPossibleValue>> values)
      : id_(id), validation_(std::move(validation)), values_(std::move(values)) {}

  kcos::COSInternedName id() const noexcept { return id_; }
  const Validation* validation() const noexcept { return validation_ ? &*validation_ : nullptr; }

  bool isPossibleValuesFinite() const override;
  kcos::COSEnumeration<const kcos::COSPossibleValue*> getPossibleValues() const override;

 private:
  kcos::COSInternedName id_;
  std::optional<Validation> validation_;
  std::optional<std::vector<kcos::COSPossibleValue>> values_;
};

}  // namespace embedded
