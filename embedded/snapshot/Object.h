#pragma once

// Objects with a fixed set of keys: a Shape is the table of what they may hold, ObjectHandler reads one,
// giveObject writes one.

#include <string>
#include <string_view>
#include <vector>

#include "embedded/snapshot/Give.h"
#include "embedded/snapshot/Place.h"
#include "embedded/snapshot/Take.h"

namespace embedded::snapshot {

enum Presence : bool { Optional, Required };

/// A key, what takes its value, and what gives it again.
template <class Type>
struct Key {
  std::string_view name;
  void (*take)(Reader&, Event&, Type&);
  /// Null: the key is read, but never written. An optional key is not written either when it would say null,
  /// or what it says of an object of which nothing is known.
  Json (*give)(Writer&, const Type&) = nullptr;
  Presence presence = Optional;
};

template <class Type>
class ObjectHandler;

/// What an object of one kind may hold: at most 32 keys.
template <class Type>
struct Shape {
  /// With its article, for messages.
  std::string_view kind;
  std::vector<Key<Type>> keys;
  /// Keys that say the same thing and must not stand together.
  std::vector<std::pair<std::string_view, std::string_view>> conflicts = {};
  /// Completes what has been read; may be null.
  void (*finish)(Type&, const ObjectHandler<Type>&) = nullptr;
};

/// The value of a key goes into a field as it is.
template <auto field, class Type>
void into(Reader& reader, Event& event, Type& object) {
  take(reader, event, object.*field);
}

template <auto field, class Type>
Json from(Writer& writer, const Type& object) {
  return give(writer, object.*field);
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
    if (seen_ & bit(current_)) reader.fail("snapshot.duplicate-key", inQuotes(name) + " stands here twice");
    seen_ |= bit(current_);
    refuseConflicts(reader);
  }

  void value(Reader& reader, Event& event) override { shape_.keys[current_].take(reader, event, object_); }

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
    std::string known;
    for (const auto& key : shape_.keys) known += (known.empty() ? "" : ", ") + std::string(key.name);
    reader.fail("snapshot.unknown-key",
                std::string(shape_.kind) + " has no key " + inQuotes(name) + "; its keys are " + known);
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

/// The value must be an object of this shape.
template <class Type>
void takeObject(Reader& reader, Event& event, Type& object, const Shape<Type>& shape) {
  if (event.kind != Event::Object) reader.refuseType(event, std::string(shape.kind));
  reader.open<ObjectHandler<Type>>(object, shape);
}

/// Is this size the one that a list of so many elements has without any?
inline bool isRow(const std::vector<std::size_t>& size, std::size_t count) {
  return size.empty() || size == std::vector<std::size_t>{1, count};
}

/// The size of an array, which is not written for a row.
template <auto size, auto elements, class Type = decltype(ownerOf(size))>
Key<Type> sizeKey() {
  return {"size", into<size, Type>, [](Writer& writer, const Type& array) {
            return isRow(array.*size, (array.*elements).size()) ? Json() : give(writer, array.*size);
          }};
}

/// The object as JSON, its keys in the order of the shape.
template <class Type>
Json giveObject(Writer& writer, const Type& object, const Shape<Type>& shape) {
  static const Type usual{};
  writer.begin();
  Json result = Json::object();
  for (const auto& key : shape.keys) {
    if (key.give == nullptr) continue;
    const Writer::Step step(writer, key.name);
    Json value = key.give(writer, object);
    if (key.presence == Required || (!value.is_null() && value != key.give(writer, usual)))
      append(result, std::string(key.name), std::move(value));
  }
  return result;
}

}  // namespace embedded::snapshot
