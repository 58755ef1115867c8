#include <algorithm>
#include <set>
#include <utility>

#include "embedded/model/Names.h"
#include "embedded/model/Value.h"
#include "embedded/snapshot/Checks.h"
#include "host/Members.h"

namespace embedded::snapshot {

namespace {

void requireNew(const CheckContext& context, const std::string& name, const Place& place) {
  const auto owner = context.classes.owner(name);
  if (!owner) return;
  const ClassDescription& other = context.description.classes[*owner];
  context.fail(
      "snapshot.duplicate-class", place,
      inQuotes(name) + " stands already for the class " + inQuotes(identityOf(other.component, other.name)));
}

template <class Member>
void checkMemberNames(const CheckContext& context, const std::vector<Member>& members, const Place& place) {
  for (std::size_t index = 0; index < members.size(); ++index) {
    const Place member(place, index);
    if (members[index].name) checkName(context, *members[index].name, member);
  }
}

void checkNamesOf(CheckContext& context, const ClassDescription& described, std::size_t index,
                  const Place& place) {
  checkDottedName(context, described.name, {place, "name"});
  if (!described.component.empty()) checkName(context, described.component, {place, "component"});
  const std::string identity = identityOf(described.component, described.name);
  requireNew(context, identity, {place, "name"});
  context.classes.addIdentity(identity, index);
  // Not required to be new: classes of several components may share a dotted name.
  context.classes.addDotted(described.name, index);
  const Place aliases(place, "aliases");
  for (std::size_t alias = 0; alias < described.aliases.size(); ++alias) {
    checkDottedName(context, described.aliases[alias], {aliases, alias});
    requireNew(context, described.aliases[alias], {aliases, alias});
    context.classes.addAlias(described.aliases[alias], index);
  }
  checkMemberNames(context, described.properties, {place, "properties"});
  checkMemberNames(context, described.methods, {place, "methods"});
  checkMemberNames(context, described.members, {place, "members"});
}

// A snapshot has several ways to write an access, so a fault of one is placed at its member.
void checkAccess(const CheckContext& context, const Access& access, const Place& member) {
  if (kcos::accessWord(access.level).empty())
    context.fail("snapshot.bad-level", member, "there is no access level " + std::to_string(access.level));
  for (const auto& name : access.classes) context.requireClass(name, member, "the access class");
}

void checkReferencesOf(CheckContext& context, const ClassDescription& described, const Place& place) {
  // Kept for the checks that follow, which walk superclasses by index.
  auto& indices = context.superclasses.emplace_back();
  const Place superclasses(place, "superclasses");
  for (std::size_t index = 0; index < described.superclasses.size(); ++index) {
    const Place superclass(superclasses, index);
    indices.push_back(context.requireClass(described.superclasses[index], superclass, "the superclass"));
  }
  const Place properties(place, "properties");
  for (std::size_t index = 0; index < described.properties.size(); ++index) {
    const Place property(properties, index);
    checkAccess(context, described.properties[index].get, property);
    checkAccess(context, described.properties[index].set, property);
    const std::string& type = described.properties[index].type;
    if (!type.empty()) checkName(context, type, {property, "type"});
  }
  const Place methods(place, "methods");
  for (std::size_t index = 0; index < described.methods.size(); ++index)
    checkAccess(context, described.methods[index].access, {methods, index});
}

/// Follows superclasses in depth, with a stack of its own: chains may be as long as the snapshot.
class CycleSearch {
 public:
  explicit CycleSearch(const CheckContext& context)
      : context_(context), states_(context.superclasses.size(), State::New) {}

  void run() {
    for (std::size_t start = 0; start < states_.size(); ++start) {
      if (states_[start] == State::New) enter(start);
      while (!trail_.empty()) step();
    }
  }

 private:
  enum class State : unsigned char { New, Open, Done };
  struct Step {
    std::size_t index;
    std::size_t nextSuperclass = 0;
  };

  void enter(std::size_t index) {
    states_[index] = State::Open;
    trail_.push_back({index});
  }

  void step() {
    Step& step = trail_.back();
    const auto& superclasses = context_.superclasses[step.index];
    if (step.nextSuperclass == superclasses.size()) {
      states_[step.index] = State::Done;
      trail_.pop_back();
      return;
    }
    const std::size_t superclass = superclasses[step.nextSuperclass++];
    // It is on the way from the start to here, so the way is a cycle.
    if (states_[superclass] == State::Open) refuse(superclass);
    if (states_[superclass] == State::New) enter(superclass);
  }

  [[noreturn]] void refuse(std::size_t repeated) const {
    const Place root;
    const Place classes(root, "classes");
    const Place last(classes, trail_.back().index);
    const Place superclasses(last, "superclasses");
    const Place culprit(superclasses, trail_.back().nextSuperclass - 1);
    context_.fail("snapshot.superclass-cycle", culprit,
                  "a class is its own superclass: " + cycleTo(repeated));
  }

  /// a -> b -> a; the middle of a long one is left out.
  std::string cycleTo(std::size_t repeated) const {
    // Cycles may be as long as the snapshot, and a message that long helps nobody.
    constexpr std::ptrdiff_t mostNames = 10;
    const auto start =
        std::find_if(trail_.begin(), trail_.end(), [&](const Step& step) { return step.index == repeated; });
    const auto length = trail_.end() - start;
    std::string names;
    for (auto step = start; step != trail_.begin() + (start - trail_.begin()) + std::min(length, mostNames);
         ++step)
      names += identityAt(step->index) + " -> ";
    if (length > mostNames) names += "(" + std::to_string(length - mostNames) + " more) -> ";
    return names + identityAt(repeated);
  }

  std::string identityAt(std::size_t index) const {
    const ClassDescription& described = context_.description.classes[index];
    return identityOf(described.component, described.name);
  }

  const CheckContext& context_;
  std::vector<State> states_;
  std::vector<Step> trail_;
};

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

void checkClassNames(CheckContext& context) {
  const Place root;
  const Place classes(root, "classes");
  for (std::size_t index = 0; index < context.description.classes.size(); ++index)
    checkNamesOf(context, context.description.classes[index], index, {classes, index});
}

void checkClassReferences(CheckContext& context) {
  const Place root;
  const Place classes(root, "classes");
  for (std::size_t index = 0; index < context.description.classes.size(); ++index)
    checkReferencesOf(context, context.description.classes[index], {classes, index});
}

void checkSuperclassCycles(const CheckContext& context) { CycleSearch(context).run(); }

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
      // Before the look-up, which so finds also a class that would precede itself.
      met.emplace(first, second);
      if (met.contains({second, first})) {
        context.fail("snapshot.conflicting-precedence", {precedence, at},
                     inQuotes(first) + " and " + inQuotes(second) + " would precede each other");
      }
    }
  }
}

}  // namespace embedded::snapshot
