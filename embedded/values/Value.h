#pragma once

#include <atomic>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "embedded/Description.h"
#include "host/Arrays.h"
#include "host/Names.h"

namespace embedded {

class ClassSystem;
class Value;

/// The host's own holder: what it does is counted by the audit, but no operation that a client asked for.
using ValuePtr = boost::intrusive_ptr<Value>;

struct Cells {
  std::vector<ValuePtr> elements;  // null: absent
};

struct Structures {
  std::vector<std::string> fields;
  std::vector<ValuePtr> values;  // element by element
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

/// An array of objects, as the conversion of a possible value yields it.
struct Objects {
  std::vector<ValuePtr> elements;
};

/// A value of the interpreter. Made with one reference.
class Value final : public kxArray_tag {
 public:
  using Content = std::variant<std::vector<double>, std::vector<bool>, std::u16string, StringScalar, Cells,
                               Structures, Object, Objects>;

  Value(std::vector<std::size_t> size, Content content);
  ~Value();

  void addReference() const noexcept;
  /// Was it the last?
  bool dropReference() const noexcept;

  /// The object, or the first one of an array of objects; null for any other value.
  const Object* object() const noexcept;
  const Content& content() const noexcept { return content_; }
  int classCode() const noexcept;
  /// "double", "logical", "char", "string", "cell", "struct", or the name by which users know the class.
  std::string className() const;
  const std::vector<std::size_t>& size() const noexcept { return size_; }
  std::size_t elementCount() const noexcept;

 private:
  std::vector<std::size_t> size_;
  Content content_;
  mutable std::atomic<std::uint32_t> references_ = 1;
};

inline const Value& valueOf(const kxArray_tag* value) { return static_cast<const Value&>(*value); }

inline void intrusive_ptr_add_ref(const Value* value) noexcept { value->addReference(); }
inline void intrusive_ptr_release(const Value* value) noexcept {
  if (value->dropReference()) delete value;
}

/// The value of a description that has been checked.
ValuePtr makeValue(const ValueDescription& description, const ClassSystem& classes);

/// The storage class of a built-in class by its name.
std::optional<int> builtInClassCode(std::string_view className) noexcept;

}  // namespace embedded
