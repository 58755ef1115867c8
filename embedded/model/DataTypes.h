#pragma once

// Data types of properties and attributes. What the library asks of them is defined in
// embedded/host/DataTypes.cpp.

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

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

/// A finite set of values. Null: any value. Shared, because all properties of an enumeration have the same.
using PossibleValues = std::shared_ptr<const std::vector<kcos::COSPossibleValue>>;

/// A data type: a name, and what properties of it may hold. Types of one name can differ in the latter.
class DataType final : public kcos::COSDataType {
 public:
  /// Allows every value.
  explicit DataType(kcos::COSInternedName id) : id_(id) {}
  DataType(kcos::COSInternedName id, std::optional<Validation> validation, PossibleValues values)
      : id_(id), validation_(std::move(validation)), values_(std::move(values)) {}

  kcos::COSInternedName id() const noexcept { return id_; }
  const Validation* validation() const noexcept { return validation_ ? &*validation_ : nullptr; }

  bool isPossibleValuesFinite() const override;
  kcos::COSEnumeration<const kcos::COSPossibleValue*> getPossibleValues() const override;

 private:
  kcos::COSInternedName id_;
  std::optional<Validation> validation_;
  PossibleValues values_;
};

/// The type of properties that say something about their values without naming a type.
inline constexpr std::string_view anyType = "any";

/// The data types of one session, and which of them can be converted.
class TypeRepository {
 public:
  /// The type of that name that allows every value; null for an empty name.
  DataType* named(std::string_view name);
  /// The type of a property that may hold these values. It may have no name of its own.
  DataType* typeOf(const PropertyDescription& property, PossibleValues values);

  /// The name of a property's data type: its type, or else the class that its validation names, or else "any" when it
  /// says anything about its values; empty when it has none.
  static std::string_view nameOfType(const PropertyDescription& property);

  /// Is there such a type, and can its values be made arrays?
  bool isConvertible(kcos::COSInternedName type) const;

 private:
  using Handle = const std::string*;  // of an interned name: equal names have one

  std::unordered_map<Handle, std::unique_ptr<DataType>> byName_;
  std::vector<std::unique_ptr<DataType>> ofOneProperty_;
  std::unordered_set<Handle> withoutConversion_;
};

}  // namespace embedded
