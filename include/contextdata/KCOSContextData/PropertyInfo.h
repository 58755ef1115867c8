#pragma once

// What is known of one property, and which properties a query asks for.

#include <contextdata/Export.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace KCOSContextData {

class ClassInfo;

/// One property that a class offers. A plain record.
struct PropertyInfo {
  /// What possibleValuesKind says.
  enum PossibleValues : std::int32_t {
    NoPossibleValues = 0,
    TextPossibleValues = 1,    ///< strings, characters or the names of enumeration members
    NumericPossibleValues = 2  ///< integers, written in decimal
  };

  std::u16string name;
  /// The class that the declaration names; otherwise the name of the data type; empty without a data type.
  std::u16string type;
  /// The declared size, one entry per dimension: a decimal number, or ":" for any extent. Empty when none is
  /// declared.
  std::vector<std::u16string> sizeStrings;
  /// The names of the validation functions, in the order of their declaration.
  std::vector<std::u16string> validationFunctions;
  bool isDependent = false;
  /// Reading the property is to be taken for running code of the class, not for reading what is stored.
  bool hasCustomGetter = false;
  /// The second yes/no answer of an optimised property; true for any other.
  bool optimizedPropertyFlag = false;
  std::int32_t possibleValuesKind = NoPossibleValues;
  /// The values that the property may take, in the order of their declaration, when they are finitely many
  /// and no validation function has a say; without the numbers that 32 bits do not hold.
  std::vector<std::u16string> possibleValues;

  /// Which properties a query asks for.
  struct GetOptions {
    /// What an entry of accessorKinds selects.
    enum AccessorKind : std::int32_t { Read = 0, Write = 1 };

    /// The access levels that qualify a property; 0 is public. Level 2 is not inherited: its first entry is
    /// dropped when a query goes on to the superclasses.
    std::vector<std::int32_t> accessLevels{0};
    /// Which accesses of a property are held against accessLevels; one that fits is enough. Other values say
    /// nothing.
    std::vector<std::int32_t> accessorKinds{Read, Write};
    /// The class whose code asks, or null. A property that grants access to it, or to a class that it derives
    /// from, qualifies whatever its access levels are. Borrowed for the query.
    const ClassInfo* accessingClass = nullptr;
    /// Whether hidden properties are included like others. Otherwise they only shadow inherited ones of the
    /// same name.
    bool includeHidden = false;
  };

  /// The extents that a declared size means, one per entry of `sizeStrings`: a number, surrounded by white
  /// space or not, is itself; ":" and a name (an ASCII letter, then ASCII letters, digits and "_") are the
  /// largest value of the type. {"1", ":"} gives {1, max}. An entry that is none of these, and a number
  /// beyond 64 bits, make the whole result empty: the size is unknown. Nothing propagates; no Korval code
  /// runs.
  CONTEXTDATA_API static std::vector<std::size_t> castSizeStringToIntegers(
      const std::vector<std::u16string>& sizeStrings);
};

}  // namespace KCOSContextData
