#include <algorithm>
#include <set>
#include <utility>

#include "embedded/model/Value.h"
#include "embedded/snapshot/Checks.h"

namespace embedded::snapshot {

namespace {

/// One text per class, whichever of its names is given.
std::string oneNameOf(const CheckContext& context, const std::string& name, const Place& place) {
  if (const auto index = context.classes.find(name)) {
    const ClassDescription& found = context.description.classes[*index];
    return identityOf(found.component, found.name);
  }
  const auto& foreign = context.description.foreignClasses;
  const bool isForeign = std::ranges::find(foreign, name, &ForeignClassDescription::name) != foreign.end();
  if (!isForeign && !builtInClassCode(name)) context.requireClass(name, place, "the preceded class");
  return name;
}

}  // namespace

void checkPrecedence(const CheckContext& context) {
  std::set<std::pair<std::string, std::string>> met;
  const Place root;
  const Place classes(root, "classes");
  for (std::size_t index = 0; index < context.description.classes.size(); ++index) {
    const ClassDescription& described = context.description.classes[index];
    const Place oneClass(classes, index);
    const Place precedence(oneClass, "precedence");
    const std::string first = identityOf(described.component, described.name);
    for (std::size_t at = 0; at < described.precedence.size(); ++at) {
      const std::string second = oneNameOf(context, described.precedence[at], {precedence, at});
      met.emplace(first, second);
      if (met.contains({second, first})) {
        context.fail("snapshot.conflicting-precedence", {precedence, at},
                     inQuotes(first) + " and " + inQuotes(second) + " would precede each other");
      }
    }
  }
}

}  // namespace embedded::snapshot
