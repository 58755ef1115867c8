#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/Description.h"
#include "embedded/model/Names.h"

namespace embedded {

/// Which class of a description a name means: the one whose identity it is, else the one whose alias it is, else the
/// first one declared that users know by it. Classes are counted in the order of their declaration. The check of a
/// description and the session ask this one table, so that nothing else is checked than what is used.
class ClassNames {
 public:
  enum Kind { Identity, Alias, Dotted };

  /// All names of all classes.
  static ClassNames of(const std::vector<ClassDescription>& classes);

  void add(std::string_view name, Kind kind, std::size_t index);

  std::optional<std::size_t> find(std::string_view name) const;
  /// The class that has the name as its identity or alias: only dotted names may belong to several.
  std::optional<std::size_t> owner(std::string_view name) const;

 private:
  struct Meaning {
    Kind kind;
    std::size_t index;
  };

  std::unordered_map<std::string, Meaning, TextHash, std::equal_to<>> meanings_;
};

}  // namespace embedded
