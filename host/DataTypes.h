#pragma once

// Data types of properties and attributes: their identity, their validation and the values they allow. Owned
// by the class system and borrowed for one query. No operation here runs Korval code; each may throw.
// Elements of enumerations are never null.

#include <cstdint>
#include <string>
#include <variant>

#include "host/Enumeration.h"
#include "host/Export.h"
#include "host/Names.h"

class kxArray_tag;

namespace kcos {

class COSDataType;

/// A nullable observer of a data type.
class COSDataTypePtr {
 public:
  COSDataTypePtr() noexcept = default;
  COSDataTypePtr(COSDataType* type) noexcept : type_(type) {}

  COSDataType* get() const noexcept { return type_; }
  COSDataType* operator->() const noexcept { return type_; }
  explicit operator bool() const noexcept { return type_ != nullptr; }

  /// The identity of the data type, which is its name. Not to be asked of a null pointer.
  KORVAL_HOST_API COSInternedName getID() const;

 private:
  COSDataType* type_ = nullptr;
};

/// One value of a finite set, in the data type's own form; only a conversion can read it.
class COSPossibleValue;

/// A data type. The base is a type that allows infinitely many values.
class KORVAL_HOST_API COSDataType {
 public:
  virtual ~COSDataType();
  virtual bool isPossibleValuesFinite() const { return false; }
  /// The values in the order of their declaration. Asked only when they are finite.
  virtual COSEnumeration<const COSPossibleValue*> getPossibleValues() const { return {}; }
};

/// Turns possible values of one data type into arrays.
class KORVAL_HOST_API COSConversion {
 public:
  virtual ~COSConversion();
  /// A new array that holds the value, with one reference, which the caller drops. Never null.
  virtual kxArray_tag* convert(const COSPossibleValue* value) const = 0;
};

/// Where conversions are found.
class KORVAL_HOST_API COSTypeRepository {
 public:
  /// The conversion from the data type `from` to the data type `to`, or null. The library asks with the type
  /// "any" first.
  static const COSConversion* getConversion(const COSInternedName& to, const COSInternedName& from);
};

/// One dimension of a declared size: a fixed extent, or the character that stands for an unrestricted one
/// (":").
using COSValidationDimension = std::variant<std::uint64_t, char16_t>;

/// One validation function of a property.
struct COSValidationFunction {
  std::string name;
};

/// What a property's declaration demands of its values.
class KORVAL_HOST_API COSValidationType {
 public:
  virtual ~COSValidationType();

  /// The validation that belongs to the data type, or null.
  static const COSValidationType* get(const COSDataTypePtr& dataType);

  /// The declared class; empty when the declaration names none.
  virtual std::string getClassName() const = 0;
  /// In the order of their declaration; no sequence when no size is declared.
  virtual COSEnumeration<COSValidationDimension> getDimensions() const = 0;
  virtual COSEnumeration<COSValidationFunction> getFunctions() const = 0;
};

}  // namespace kcos
