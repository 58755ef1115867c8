#include "tools/lsp/VariableIndex.h"

#include <algorithm>
#include <numeric>

namespace tools::lsp {

namespace {

char lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// Below 0, 0 or above 0, as the first text comes before the second one, whatever the case of their letters.
int compare(std::string_view left, std::string_view right) {
  const std::size_t length = std::min(left.size(), right.size());
  for (std::size_t at = 0; at < length; ++at) {
    const int difference = lower(left[at]) - lower(right[at]);
    if (difference != 0) return difference;
  }
  return left.size() < right.size() ? -1 : (left.size() > right.size() ? 1 : 0);
}

/// The same, of as much of the first text as the second one has.
int compareBeginning(std::string_view left, std::string_view right) {
  return compare(left.substr(0, right.size()), right);
}

}  // namespace

VariableIndex::VariableIndex(const Variables& variables) : places_(variables.size()) {
  std::iota(places_.begin(), places_.end(), std::size_t{0});
  std::ranges::sort(places_, [&](std::size_t left, std::size_t right) {
    return compare(variables[left].name, variables[right].name) < 0;
  });
}

VariableIndex::Part VariableIndex::beginningWith(const Variables& variables, const std::string& text) const {
  const auto begin = std::ranges::partition_point(
      places_, [&](std::size_t place) { return compareBeginning(variables[place].name, text) < 0; });
  const auto end = std::partition_point(begin, places_.end(), [&](std::size_t place) {
    return compareBeginning(variables[place].name, text) == 0;
  });
  return {begin, end};
}

VariableIndex::Variables VariableIndex::fitting(const Variables& variables,
                                                const std::vector<std::string>& words,
                                                const std::string& typed, std::size_t most) const {
  Places found(std::min(most, variables.size()));
  std::iota(found.begin(), found.end(), std::size_t{0});
  for (const std::string& word : words) {
    // Shorter names come first.
    const Part part = beginningWith(variables, word);
    for (auto place = part.begin; place != part.end && variables[*place].name.size() == word.size(); ++place)
      found.push_back(*place);
  }
  const Part part = beginningWith(variables, typed);
  if (static_cast<std::size_t>(part.end - part.begin) <= most) {
    found.insert(found.end(), part.begin, part.end);
  } else {
    // There are many, so the first ones are soon found.
    std::size_t left = most;
    for (std::size_t place = 0; left > 0 && place < variables.size(); ++place) {
      if (compareBeginning(variables[place].name, typed) != 0) continue;
      found.push_back(place);
      --left;
    }
  }
  std::ranges::sort(found);
  found.erase(std::unique(found.begin(), found.end()), found.end());
  Variables few;
  for (const std::size_t place : found) few.push_back(variables[place]);
  return few;
}

}  // namespace tools::lsp
