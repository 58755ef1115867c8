#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "embedded/Snapshot.h"

namespace embedded::snapshot {

/// Appends one step (a key, or an index as text) to a JSON pointer.
void appendStep(std::string& pointer, std::string_view step);

/// A name as it stands in a message: in quotes, and cut when it is very long.
std::string inQuotes(std::string_view name);

/// The JSON pointer to a part of a description: a step from the pointer to what is around it. Making one costs nothing;
/// only a fault asks for its text.
class JsonPointer {
 public:
  constexpr JsonPointer() = default;
  JsonPointer(const JsonPointer& outer, std::string_view key) : outer_(&outer), step_(key) {}
  JsonPointer(const JsonPointer& outer, std::size_t index) : outer_(&outer), step_(index) {}
  // The outer pointer is referred to, and must live as long.
  JsonPointer(const JsonPointer&& temporary, std::string_view key) = delete;
  JsonPointer(const JsonPointer&& temporary, std::size_t index) = delete;

  std::string text() const;

 private:
  const JsonPointer* outer_ = nullptr;
  std::variant<std::string_view, std::size_t> step_;
};

/// The description as a whole.
inline constexpr JsonPointer root;

/// Calls `action` for each entry of a list, which is the value of that key, with the pointer to the entry.
template <class List, class Action>
void forEach(const List& list, const JsonPointer& outer, std::string_view key, Action action) {
  const JsonPointer pointer(outer, key);
  std::size_t index = 0;
  for (const auto& entry : list) action(entry, JsonPointer(pointer, index++));
}

/// What goes wrong meanwhile goes wrong in that variable: the reason names it.
template <class Action>
void inVariable(const std::string& name, Action action) {
  try {
    action();
  } catch (const SnapshotError& error) {
    throw SnapshotError(error.code(), error.file(), error.pointer(),
                        "the variable " + inQuotes(name) + ": " + error.reason());
  }
}

}  // namespace embedded::snapshot
