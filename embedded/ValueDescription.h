#pragma once

// Values as plain data.

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace embedded {

struct ValueDescription;
struct PropertyValue;

/// How a value holds its dimensions: as a list; as just two numbers; or, of opaque objects, not before somebody
/// asks for them to be completed.
enum class DimensionForm { Full, Compact, Lazy };

struct DoubleArray {
  /// Empty: a row of all elements.
  std::vector<std::size_t> size;
  std::vector<double> elements;
};
struct LogicalArray {
  std::vector<std::size_t> size;
  std::vector<bool> elements;
};
/// A row of characters.
struct CharacterRow {
  std::u16string text;
};
/// A string scalar; without a value it is the missing string.
struct StringScalar {
  std::optional<std::u16string> text;
};
/// Strings of any number of dimensions.
struct StringArray {
  std::vector<std::size_t> size;
  /// An element without a value is a missing string.
  std::vector<std::optional<std::u16string>> elements;
};
/// A rectangle of characters, column by column; without a size a row.
struct CharacterArray {
  std::vector<std::size_t> size;
  std::u16string elements;
};
struct CellArray {
  std::vector<std::size_t> size;
  /// An element without a value is absent.
  std::vector<std::optional<ValueDescription>> elements;
};
struct StructureArray {
  std::vector<std::size_t> size;
  std::vector<std::string> fields;
  /// Element by element, each with one value per field.
  std::vector<ValueDescription> values;
  /// Of a structure-based object: its class of the older object system. Empty: a plain structure.
  std::string className = {};
};
/// A scalar object of a class of the class system, with the stored values of its properties.
struct ObjectValue {
  std::string className = {};
  std::vector<PropertyValue> properties;
  /// The enumeration member that the object is; empty: none.
  std::string member = {};
  /// What the object shows for itself; without a value, nothing.
  std::optional<std::u16string> text = {};
  /// Asking for that text fails.
  bool failing = false;
};

/// Several objects of one class.
struct ObjectArray {
  std::vector<std::size_t> size;
  std::string className;
  /// Each an ObjectValue of that class, or an OpaqueObject when the array is foreign.
  std::vector<ValueDescription> elements;
  /// The class is one of a foreign object system.
  bool foreign = false;
};

/// What an opaque object returns for a call of that name: a value, or an error when there is none.
struct OpaqueMethod;

/// A scalar object of a foreign object system.
struct OpaqueObject {
  std::string className;
  /// The fields, which are read without running code.
  std::vector<PropertyValue> fields;
  std::vector<OpaqueMethod> methods;
  /// The foreign object system is the one whose members are "java".
  bool java = false;
  DimensionForm dimensions = DimensionForm::Full;
};

struct FunctionHandleValue {
  std::string function;
};
/// A reference to a class of the class system or of a foreign one.
struct ClassReferenceValue {
  std::string className;
};
/// A member of a class of a foreign object system.
struct ForeignMemberValue {
  std::string className;
  std::string member;
};
/// A value that is computed only when it is asked for; nothing here ever asks.
struct TallValue {
  /// One value.
  std::vector<ValueDescription> inside;
};

struct ValueDescription {
  std::variant<DoubleArray, LogicalArray, CharacterRow, StringScalar, CellArray, StructureArray, ObjectValue,
               StringArray, CharacterArray, ObjectArray, OpaqueObject, FunctionHandleValue,
               ClassReferenceValue, TallValue, ForeignMemberValue>
      content;
};

/// The stored value of an object's property.
struct PropertyValue {
  std::string name;
  ValueDescription value;
};

struct OpaqueMethod {
  std::string name;
  std::optional<ValueDescription> answer;
};

}  // namespace embedded
