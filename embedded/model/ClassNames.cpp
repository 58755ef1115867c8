#include "embedded/model/ClassNames.h"

namespace embedded {

ClassNames ClassNames::of(const std::vector<ClassDescription>& classes) {
  ClassNames names;
  for (std::size_t index = 0; index < classes.size(); ++index) {
    const ClassDescription& described = classes[index];
    names.add(identityOf(described.component, described.name), Identity, index);
    names.add(described.name, Dotted, index);
    for (const std::string& alias : described.aliases) names.add(alias, Alias, index);
  }
  return names;
}

void ClassNames::add(std::string_view name, Kind kind, std::size_t index) {
  const auto [place, isNew] = meanings_.try_emplace(std::string(name), Meaning{kind, index});
  // The better kind wins whatever came first; of one kind the first one declared stays.
  if (!isNew && kind < place->second.kind) place->second = {kind, index};
}

std::optional<std::size_t> ClassNames::find(std::string_view name) const {
  const auto found = meanings_.find(name);
  return found == meanings_.end() ? std::nullopt : std::optional(found->second.index);
}

std::optional<std::size_t> ClassNames::owner(std::string_view name) const {
  const auto found = meanings_.find(name);
  return found == meanings_.end() || found->second.kind == Dotted ? std::nullopt
                                                                  : std::optional(found->second.index);
}

}  // namespace embedded
