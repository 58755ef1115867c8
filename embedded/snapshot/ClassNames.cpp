#include "embedded/snapshot/ClassNames.h"

namespace embedded::snapshot {

std::optional<std::size_t> ClassNames::owner(const std::string& name) const {
  return findIn({&identities_, &aliases_}, name);
}

std::optional<std::size_t> ClassNames::find(const std::string& name) const {
  return findIn({&identities_, &dotted_, &aliases_}, name);
}

std::optional<std::size_t> ClassNames::findIn(std::initializer_list<const Names*> tables,
                                              const std::string& name) {
  for (const Names* table : tables) {
    if (const auto found = table->find(name); found != table->end()) return found->second;
  }
  return std::nullopt;
}

}  // namespace embedded::snapshot
