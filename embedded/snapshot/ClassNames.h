#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

#include "embedded/model/Names.h"

namespace embedded::snapshot {

/// Which class a name of a description means: the one whose identity it is, else the first one that users know
/// by it, else the one whose alias it is.
class ClassNames {
 public:
  /// Answers the class that has the identity or the alias already.
  std::optional<std::size_t> owner(const std::string& name) const;

  void addIdentity(const std::string& name, std::size_t index) { identities_.emplace(name, index); }
  void addDotted(const std::string& name, std::size_t index) { dotted_.emplace(name, index); }
  void addAlias(const std::string& name, std::size_t index) { aliases_.emplace(name, index); }

  std::optional<std::size_t> find(const std::string& name) const;

 private:
  using Names = std::unordered_map<std::string, std::size_t>;

  static std::optional<std::size_t> findIn(std::initializer_list<const Names*> tables,
                                           const std::string& name);

  Names identities_;
  Names dotted_;
  Names aliases_;
};

}  // namespace embedded::snapshot
