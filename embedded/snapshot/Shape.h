#pragma once

// What a snapshot holds, type by type. shapeOf() is the one description of a type's keys (or wordsOf() of its words),
// from which read() and write() are made: what write() makes of a value, read() makes the same value of.
//
// A new field is a key of its type's shape; a new kind of value is an alternative of ValueDescription, with a shape and
// an entry among the kinds in ValueShapes.cpp.

#include <boost/algorithm/string/join.hpp>
#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "embedded/Description.h"
#include "embedded/snapshot/JsonPointer.h"
#include "embedded/snapshot/Reader.h"
#include "embedded/snapshot/Writer.h"

namespace embedded::snapshot {

using Json = nlohmann::ordered_json;

enum Presence : bool { Optional, Required };

/// A key, what reads its value, and what writes it again.
template <class Type>
struct Key {
  std::string_view name;
  void (*read)(Reader&, Event&, Type&);
  /// Null: the key is read, but never written. An optional key is not written either when it would say null,
  /// or what it says of an object of which nothing is known.
  Json (*write)(Writer&, const Type&) = nullptr;
  Presence presence = Optional;
};

template <class Type>
class ObjectHandler;

/// What an object of one type may hold: at most 32 keys.
template <class Type>
struct Shape {
  /// With its article, for messages.
  std::string_view kind;
  std::vector<Key<Type>> keys;
  /// Keys that say the same thing and must not stand together.
  std::vector<std::pair<std::string_view, std::string_view>> conflicts = {};
  /// Completes what has been read; may be null.
  void (*finish)(Type&, const ObjectHandler<Type>&) = nullptr;
  /// Reads the value when it is written in a shorter way than as an object; null: there is no shorter way.
  bool (*readShort)(Reader&, Event&, Type&) = nullptr;
  /// Writes the value in its shortest way; null: as an object.
  Json (*write)(Writer&, const Type&) = nullptr;
};

template <class Type>
Type undescribed() = delete;

/// A type without a shape of its own does not compile.
template <class Type>
const Shape<Type> shapeOf = undescribed<Shape<Type>>();

/// A few words, each with its meaning.
template <class Meaning>
using Words = std::vector<std::pair<std::string_view, Meaning>>;

/// The words for the enumerators of a type.
template <class Enumeration>
const Words<Enumeration> wordsOf = undescribed<Words<Enumeration>>();

// read() puts the value of an event where it belongs, or opens the handler that will, or refuses it.

void read(Reader& reader, Event& event, bool& destination);
void read(Reader& reader, Event& event, int& destination);
void read(Reader& reader, Event& event, std::size_t& destination);
/// The dimensions of an array, at least two.
void read(Reader& reader, Event& event, std::vector<std::size_t>& destination);
/// An extent of a declared size: a number, or ":" for any.
void read(Reader& reader, Event& event, std::optional<std::size_t>& destination);
/// A number, or one of the texts "NaN", "Inf", "-Inf".
void read(Reader& reader, Event& event, double& destination);
void read(Reader& reader, Event& event, std::string& destination);
/// A name, or null for a missing one.
void read(Reader& reader, Event& event, MemberName& destination);
void read(Reader& reader, Event& event, std::u16string& destination);
void read(Reader& reader, Event& event, std::optional<std::u16string>& destination);
void read(Reader& reader, Event& event, ValueDescription& destination);
void read(Reader& reader, Event& event, std::optional<ValueDescription>& destination);
void read(Reader& reader, Event& event, Description& destination);

Json write(Writer& writer, bool value);
Json write(Writer& writer, int value);
Json write(Writer& writer, std::size_t value);
Json write(Writer& writer, const std::optional<std::size_t>& value);
Json write(Writer& writer, double value);
Json write(Writer& writer, const std::string& value);
Json write(Writer& writer, const std::u16string& value);
Json write(Writer& writer, const ValueDescription& value);
Json write(Writer& writer, const Description& value);

/// About how much memory another element of a list takes: in the description and in the session that is made of it.
/// Measured; tests/snapshot/Bombs.cpp holds every shape against its text.
template <class Element>
constexpr std::size_t memoryOf = 3 * sizeof(Element);
template <>
inline constexpr std::size_t memoryOf<ValueDescription> = sizeof(ValueDescription) + 270;
template <>
inline constexpr std::size_t memoryOf<std::optional<ValueDescription>> = memoryOf<ValueDescription>;
template <>
inline constexpr std::size_t memoryOf<PropertyValue> = 2 * sizeof(PropertyValue) + 400;
template <>
inline constexpr std::size_t memoryOf<OpaqueMethod> = memoryOf<PropertyValue>;
template <>
inline constexpr std::size_t memoryOf<PropertyDescription> = sizeof(PropertyDescription) + 270;
template <>
inline constexpr std::size_t memoryOf<MethodDescription> = sizeof(MethodDescription) + 200;
template <>
inline constexpr std::size_t memoryOf<ClassDescription> = sizeof(ClassDescription) + 1100;
template <>
inline constexpr std::size_t memoryOf<PathItemDescription> = 2000;  // four paths of folders, which are split
template <>
inline constexpr std::size_t memoryOf<FunctionDescription> = sizeof(FunctionDescription) + 600;

/// The text of an event, or an error that says what was expected.
std::string& requireText(Reader& reader, Event& event, const std::string& expected);

/// What messages list: one text of each entry.
template <class List, class Member>
std::string listed(const List& list, Member member) {
  std::vector<std::string> texts;
  for (const auto& entry : list) texts.emplace_back(std::invoke(member, entry));
  return boost::algorithm::join(texts, ", ");
}

template <class Meaning>
void readWord(Reader& reader, Event& event, Meaning& destination, const Words<Meaning>& words) {
  const std::string known = listed(words, &Words<Meaning>::value_type::first);
  const std::string& text = requireText(reader, event, "one of " + known);
  for (const auto& [word, meaning] : words) {
    if (word != text) continue;
    destination = meaning;
    return;
  }
  reader.fail("snapshot.unknown-word", inQuotes(text) + " is none of " + known);
}

/// An enumerator that has no word is none that its type has.
template <class Meaning>
Json writeWord(const Writer& writer, Meaning value, const Words<Meaning>& words) {
  for (const auto& [word, meaning] : words)
    if (meaning == value) return word;
  writer.fail("snapshot.unknown-word", "there is no word for " + std::to_string(static_cast<int>(value)));
}

/// The value must be an object of this shape.
template <class Type>
void readObject(Reader& reader, Event& event, Type& object, const Shape<Type>& shape) {
  if (event.kind != Event::Object) reader.refuseType(event, std::string(shape.kind));
  reader.open<ObjectHandler<Type>>(object, shape);
}

template <class Type>
void read(Reader& reader, Event& event, Type& destination) {
  if constexpr (std::is_enum_v<Type>) {
    readWord(reader, event, destination, wordsOf<Type>);
  } else {
    const Shape<Type>& shape = shapeOf<Type>;
    if (shape.readShort != nullptr && shape.readShort(reader, event, destination)) return;
    readObject(reader, event, destination, shape);
  }
}

/// Of something that may be missing, which a snapshot leaves out then.
template <class Type>
void read(Reader& reader, Event& event, std::optional<Type>& destination) {
  read(reader, event, destination.emplace());
}

/// The elements of a list.
template <class Element>
class ListHandler final : public Handler {
 public:
  explicit ListHandler(std::vector<Element>& list) : list_(list) {}

  void value(Reader& reader, Event& event) override {
    // While a long list grows, what it has outgrown is there too.
    constexpr std::size_t isLong = 4096;
    reader.need(memoryOf<Element> + (list_.size() < isLong ? 0 : sizeof(Element)));
    if constexpr (std::is_same_v<Element, bool>) {
      bool element = false;
      read(reader, event, element);
      list_.push_back(element);
    } else {
      read(reader, event, list_.emplace_back());
    }
  }
  // Lists grow by doubling, and most of a session stands in lists.
  void end(Reader& /*reader*/) override { list_.shrink_to_fit(); }

 private:
  std::vector<Element>& list_;
};

template <class Element>
void read(Reader& reader, Event& event, std::vector<Element>& destination) {
  if (event.kind != Event::Array) reader.refuseType(event, "a list");
  reader.open<ListHandler<Element>>(destination);
}

/// Appends a key that the object does not have.
inline void append(Json& object, std::string key, Json value) {
  // Assigning by the key would look for it first, among all that are there.
  Json::object_t::Container& entries = object.get_ref<Json::object_t&>();
  entries.emplace_back(std::move(key), std::move(value));
}

/// The object as JSON, its keys in the order of the shape.
template <class Type>
Json writeObject(Writer& writer, const Type& object, const Shape<Type>& shape) {
  static const Type usual{};
  writer.begin();
  Json result = Json::object();
  for (const auto& key : shape.keys) {
    if (key.write == nullptr) continue;
    const Writer::Step step(writer, key.name);
    Json value = key.write(writer, object);
    if (key.presence == Required || (!value.is_null() && value != key.write(writer, usual)))
      append(result, std::string(key.name), std::move(value));
  }
  return result;
}

template <class Type>
Json write(Writer& writer, const Type& value) {
  if constexpr (std::is_enum_v<Type>) {
    return writeWord(writer, value, wordsOf<Type>);
  } else {
    const Shape<Type>& shape = shapeOf<Type>;
    return shape.write == nullptr ? writeObject(writer, value, shape) : shape.write(writer, value);
  }
}

/// Without a value: null.
template <class Value>
Json write(Writer& writer, const std::optional<Value>& value) {
  return value ? write(writer, *value) : Json();
}

template <class List>
Json writeList(Writer& writer, const List& list) {
  writer.begin();
  Json result = Json::array();
  std::size_t index = 0;
  for (const auto& element : list) {
    const Writer::Step step(writer, index++);
    result.push_back(write(writer, element));
  }
  return result;
}

template <class Element>
Json write(Writer& writer, const std::vector<Element>& list) {
  return writeList(writer, list);
}

/// The value of a key goes into a field as it is.
template <auto field, class Type>
void into(Reader& reader, Event& event, Type& object) {
  read(reader, event, object.*field);
}

template <auto field, class Type>
Json from(Writer& writer, const Type& object) {
  return write(writer, object.*field);
}

template <class Type, class Field>
Type ownerOf(Field Type::*);

/// The key of a field that is read and written as it is.
template <auto field, class Type = decltype(ownerOf(field))>
Key<Type> key(std::string_view name, Presence presence = Optional) {
  return {name, into<field, Type>, from<field, Type>, presence};
}

template <class Type>
class ObjectHandler final : public Handler {
 public:
  ObjectHandler(Type& object, const Shape<Type>& shape) : object_(object), shape_(shape) {}

  bool has(std::string_view name) const {
    const auto found = find(name);
    return found < shape_.keys.size() && (seen_ & bit(found)) != 0;
  }

  void key(Reader& reader, const std::string& name) override {
    current_ = find(name);
    if (current_ == shape_.keys.size()) refuseKey(reader, name);
    if (seen_ & bit(current_)) reader.refuseRepeated(name);
    seen_ |= bit(current_);
    refuseConflicts(reader);
  }

  void value(Reader& reader, Event& event) override { shape_.keys[current_].read(reader, event, object_); }

  void end(Reader& reader) override {
    for (const auto& key : shape_.keys) {
      if (key.presence == Required && !has(key.name))
        reader.fail("snapshot.missing-key", std::string(shape_.kind) + " needs " + inQuotes(key.name));
    }
    if (shape_.finish) shape_.finish(object_, *this);
  }

 private:
  static unsigned bit(std::size_t index) { return 1U << index; }

  std::size_t find(std::string_view name) const {
    std::size_t index = 0;
    while (index < shape_.keys.size() && shape_.keys[index].name != name) ++index;
    return index;
  }

  [[noreturn]] void refuseKey(const Reader& reader, const std::string& name) const {
    reader.fail("snapshot.unknown-key", std::string(shape_.kind) + " has no key " + inQuotes(name) +
                                            "; its keys are " + listed(shape_.keys, &Key<Type>::name));
  }

  void refuseConflicts(const Reader& reader) const {
    for (const auto& [one, other] : shape_.conflicts) {
      if (has(one) && has(other))
        reader.fail("snapshot.conflicting-keys", inQuotes(one) + " and " + inQuotes(other) +
                                                     " say the same thing: only one of them may stand here");
    }
  }

  Type& object_;
  const Shape<Type>& shape_;
  std::size_t current_ = 0;
  unsigned seen_ = 0;
};

// Structures have two shapes. They are in StructureShapes.cpp; all others are in DescriptionShapes.cpp and
// ValueShapes.cpp.

/// {"struct": {"a": 1}}: one element.
const Shape<StructureArray>& oneStructure();
/// {"structs": [{"a": 1}, {"a": 2}]}: several; without any, "fields" names the fields.
const Shape<StructureArray>& severalStructures();

/// In the shorter of both.
Json write(Writer& writer, const StructureArray& array);

/// Is this size the one that a list of so many elements has without any?
bool isRow(const std::vector<std::size_t>& size, std::size_t count);

}  // namespace embedded::snapshot
