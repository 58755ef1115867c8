#pragma once

#include <atomic>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "embedded/Description.h"
#include "host/Arrays.h"
#include "host/Names.h"

namespace embedded {

class ClassSystem;
class Value;
/// However deep values are nested, this takes little of the stack, and allocates nothing.
void destroyValue(const Value* value) noexcept;

/// The host's own holder: what it does is counted by the audit, but no operation that a client asked for. What is held
/// by several does not change.
using ValuePtr = boost::intrusive_ptr<const Value>;
/// Of whoever has made a value and shares it with nobody yet: the only one who may write to it.
using OwnedValue = boost::intrusive_ptr<Value>;

struct Cells {
  std::vector<ValuePtr> elements;  // null: absent
};

struct Strings {
  std::vector<std::optional<std::u16string>> elements;  // without a value: missing
};

/// Where the fields of one structure stand, by their names. Made at the first question. It refers to the texts of its
/// structure, and therefore is not copied with it.
class FieldIndex {
 public:
  FieldIndex() = default;
  FieldIndex(const FieldIndex&) noexcept {}
  FieldIndex(FieldIndex&&) = default;
  FieldIndex& operator=(FieldIndex) = delete;

  std::size_t find(const std::vector<std::string>& fields, std::string_view field);

 private:
  std::unordered_map<std::string_view, std::size_t> places_;
};

struct Structures {
  /// Where the field stands among the fields, which do not change any more; after the last one when there is none of that
  /// name.
  std::size_t indexOf(std::string_view field) const { return index.find(fields, field); }

  std::vector<std::string> fields;
  /// Element by element. Null is an empty array, which is made only when it is lent.
  mutable std::vector<ValuePtr> values;
  std::string className = {};                   // of structure-based objects
  mutable std::vector<const char*> names = {};  // the fields, as they are lent
  mutable FieldIndex index = {};
};

/// Knows its class by name only, so that it outlives the host.
struct Object {
  kcos::COSInternedName classId;
  kcos::COSInternedName className;  // the one that users know
  std::vector<std::pair<std::string, ValuePtr>> properties;
  std::string member;
  std::optional<std::u16string> text;  // what it shows for itself
  bool failing = false;                // asking for that fails
};

/// A scalar object of a foreign object system.
struct Opaque {
  struct Method {
    std::string name;
    ValuePtr answer;  // null: calling it fails
  };

  std::string className;
  std::vector<std::pair<std::string, ValuePtr>> fields;
  std::vector<Method> methods;
  bool java = false;
};

/// An array of objects of one class, or of opaque ones.
struct Objects {
  std::vector<ValuePtr> elements;
  /// Of the array, also when it has no elements: the name that users know, and the identity, which opaque objects have
  /// none of.
  std::string className = {};
  kcos::COSInternedName classId = {};
  bool ofPossibleValues = false;  // the conversion of a possible value has yielded it
};

struct FunctionHandle {
  std::string function;
};

/// A reference to a class, by the name that users know; by its identity where that name means another class.
struct ClassReference {
  std::string className;
};

/// A member of a class of a foreign object system.
struct ForeignMember {
  std::string className;
  std::string name;
};

struct Tall {
  ValuePtr inside;
};

/// The kinds without elements: a value of such a kind is alone.
template <class Kind>
concept ScalarKind =
    std::same_as<Kind, Object> || std::same_as<Kind, Opaque> || std::same_as<Kind, FunctionHandle> ||
    std::same_as<Kind, ClassReference> || std::same_as<Kind, ForeignMember> || std::same_as<Kind, Tall>;

/// Of all values of the process: how many there are, and how many references were added and dropped so far. A new
/// value counts as one added.
struct ValueCounts {
  std::int64_t values = 0;
  std::uint64_t added = 0;
  std::uint64_t dropped = 0;
};

/// A value of the interpreter. Made with one reference.
class Value final : public kxArray_tag {
 public:
  using Content =
      std::variant<std::vector<double>, std::vector<bool>, std::u16string, Strings, Cells, Structures, Object,
                   Objects, Opaque, FunctionHandle, ClassReference, ForeignMember, Tall>;

  using Size = std::vector<std::size_t>;
  /// How many elements an array of that size has. It must not be too big for any: such sizes are checked before.
  static std::size_t elementsOf(const Size& size) noexcept;

  Value(Size size, Content content, DimensionForm form = DimensionForm::Full);
  ~Value();

  void addReference() const noexcept;
  /// Was it the last?
  bool dropReference() const noexcept;
  static ValueCounts counts() noexcept;
  /// The bytes of the values that this thread has made, less those of the values that it has deleted.
  static std::int64_t memoryOfThread() noexcept;

  /// The object, or the first one of an array of objects; null for any other value.
  const Object* object() const noexcept;
  /// The identity of the class of an object or of an array of objects, also of an empty one; the null name for any
  /// other value.
  kcos::COSInternedName classId() const noexcept;
  /// The same for opaque objects.
  const Opaque* opaque() const noexcept;
  /// The value itself when it is a structure-based object of the older object system; null for any other value.
  const Structures* structureObject() const noexcept;
  const Content& content() const noexcept { return content_; }
  Content& mutableContent() noexcept { return content_; }
  template <class Kind>
  const Kind* as() const noexcept {
    return std::get_if<Kind>(&content_);
  }
  int classCode() const noexcept;
  /// "double", "logical", "char", "string", "cell", "struct", "function_handle", "class_reference", "tall", or
  /// the name by which users know the class.
  std::string className() const;
  const Size& size() const noexcept { return size_; }
  /// "2x3".
  std::string sizeText() const;
  std::size_t rows() const noexcept { return size_[0]; }
  /// Of the value as a rectangle: of all dimensions but the first.
  std::size_t columns() const noexcept;
  std::size_t elementCount() const noexcept { return elementsOf(size_); }

  DimensionForm dimensionForm() const noexcept { return form_; }
  /// What has been held lazily is held fully from now on.
  void completeDimensions() const noexcept;

 private:
  Size size_;
  Content content_;
  mutable DimensionForm form_;
  mutable std::atomic<std::uint32_t> references_ = 1;
  std::size_t bytes_;
  /// Of those that wait to be deleted: the list needs no memory of its own, for there may be none left.
  mutable const Value* nextToDelete_ = nullptr;

  friend void destroyValue(const Value* value) noexcept;
};

inline const Value& valueOf(const kxArray_tag* value) { return static_cast<const Value&>(*value); }

/// The value as the contract lends it, which has no const: of all that it lends, clients write only to the cells that
/// they have made.
inline kxArray_tag* lent(const Value* value) noexcept { return const_cast<Value*>(value); }
/// The same with one reference for the caller.
inline kxArray_tag* handedOut(ValuePtr value) noexcept { return lent(value.detach()); }

inline void intrusive_ptr_add_ref(const Value* value) noexcept { value->addReference(); }
inline void intrusive_ptr_release(const Value* value) noexcept {
  if (value->dropReference()) destroyValue(value);
}

OwnedValue newValue(Value::Size size, Value::Content content, DimensionForm form = DimensionForm::Full);
OwnedValue newNumber(double number);
OwnedValue newLogical(bool value);
/// A row of characters.
OwnedValue newText(std::u16string text);
OwnedValue newString(std::optional<std::u16string> text);
/// The empty array of doubles.
OwnedValue newEmpty();
/// A column of rows of characters.
OwnedValue newCellOfTexts(const std::vector<std::string>& texts);

/// The value of a description that has been checked.
OwnedValue makeValue(const ValueDescription& description, const ClassSystem& classes);

/// The class of the objects that stand for namespaces: a built-in function makes them, no description has it.
inline constexpr std::string_view namespaceObjectClass = "korval.metadata.Namespace";

/// The storage class of a built-in class by its name.
std::optional<int> builtInClassCode(std::string_view className) noexcept;

}  // namespace embedded
