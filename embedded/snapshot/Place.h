#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "embedded/Snapshot.h"

namespace embedded::snapshot {

/// Values nest without end in a hostile text, and are copied and destroyed by recursion: how many objects and
/// lists may be open at once.
constexpr std::size_t deepestLevel = 200;

/// Appends one step (a key, or an index as text) to a JSON pointer.
void appendStep(std::string& pointer, std::string_view step);

/// A name as it stands in a message: in quotes, and cut when it is very long.
std::string inQuotes(std::string_view name);

/// A place in a description: a step from an outer place. Making one costs nothing; only a fault asks for its
/// pointer.
class Place {
 public:
  Place() = default;
  Place(const Place& outer, std::string_view key) : outer_(&outer), step_(key) {}
  Place(const Place& outer, std::size_t index) : outer_(&outer), step_(index) {}
  Place(const Place&& temporary, std::string_view key) = delete;
  Place(const Place&& temporary, std::size_t index) = delete;

  std::string pointer() const;

 private:
  const Place* outer_ = nullptr;
  std::variant<std::string_view, std::size_t> step_;
};

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
