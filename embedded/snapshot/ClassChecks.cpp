#include <algorithm>
#include <functional>
#include <set>
#include <utility>

#include "embedded/model/Names.h"
#include "embedded/model/Value.h"
#include "embedded/snapshot/Checks.h"
#include "embedded/snapshot/Limits.h"
#include "host/Members.h"

namespace embedded::snapshot {

namespace {

void requireNew(const CheckContext& context, const std::string& name, const JsonPointer& pointer) {
  const auto owner = context.classes.owner(name);
  // A dotted name has no owner, for several classes may have it.
  if (!owner) return;
  const ClassDescription& other = context.description.classes[*owner];
  context.fail(
      "snapshot.duplicate-class", pointer,
      inQuotes(name) + " stands already for the class " + inQuotes(identityOf(other.component, other.name)));
}

template <class Member>
void checkMemberNames(const CheckContext& context, const std::vector<Member>& members,
                      const JsonPointer& oneClass, std::string_view key) {
  forEach(members, oneClass, key, [&](const Member& member, const JsonPointer& here) {
    if (member.name) checkClassSystemName(context, *member.name, here);
  });
}

void checkNamesOf(CheckContext& context, const ClassDescription& described, std::size_t index,
                  const JsonPointer& pointer) {
  const JsonPointer name(pointer, "name");
  checkDottedName(context, described.name, name);
  checkClassSystemName(context, described.name, name);
  if (!described.component.empty())
    checkClassSystemName(context, described.component, {pointer, "component"});
  const std::string identity = identityOf(described.component, described.name);
  requireNew(context, identity, name);
  context.classes.add(identity, ClassNames::Identity, index);
  // Not required to be new: classes of several components may share a dotted name.
  context.classes.add(described.name, ClassNames::Dotted, index);
  forEach(described.aliases, pointer, "aliases", [&](const std::string& alias, const JsonPointer& here) {
    checkDottedName(context, alias, here);
    checkClassSystemName(context, alias, here);
    requireNew(context, alias, here);
    context.classes.add(alias, ClassNames::Alias, index);
  });
  checkMemberNames(context, described.properties, pointer, "properties");
  checkMemberNames(context, described.methods, pointer, "methods");
  checkMemberNames(context, described.members, pointer, "members");
}

// A snapshot has several ways to write an access, so a fault of one is placed at its member.
void checkAccess(const CheckContext& context, const Access& access, const JsonPointer& member) {
  if (kcos::accessWord(access.level).empty())
    context.fail("snapshot.bad-level", member, "there is no access level " + std::to_string(access.level));
  for (const auto& name : access.classes) context.requireClass(name, member, "the access class");
}

void checkReferencesOf(CheckContext& context, const ClassDescription& described, const JsonPointer& pointer) {
  // Kept for the checks that follow, which walk superclasses by index.
  auto& indices = context.superclasses.emplace_back();
  forEach(described.superclasses, pointer, "superclasses",
          [&](const std::string& superclass, const JsonPointer& here) {
            indices.push_back(context.requireClass(superclass, here, "the superclass"));
          });
  forEach(described.properties, pointer, "properties",
          [&](const PropertyDescription& property, const JsonPointer& here) {
            checkAccess(context, property.get, here);
            checkAccess(context, property.set, here);
            if (!property.type.empty()) checkName(context, property.type, {here, "type"});
          });
  forEach(described.methods, pointer, "methods",
          [&](const MethodDescription& method, const JsonPointer& here) {
            checkAccess(context, method.access, here);
          });
}

/// Follows superclasses in depth, with a stack of its own: chains may be as long as the snapshot. What asks the session
/// later climbs with the thread's stack, so that chains longer than that may carry are refused.
class CycleSearch {
 public:
  explicit CycleSearch(const CheckContext& context)
      : context_(context),
        states_(context.superclasses.size(), State::New),
        levels_(context.superclasses.size(), 1) {}

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
      const std::size_t level = levels_[step.index];
      trail_.pop_back();
      if (!trail_.empty()) raise(trail_.back(), level + 1);
      return;
    }
    const std::size_t superclass = superclasses[step.nextSuperclass++];
    // It is on the way from the start to here, so the way is a cycle.
    if (states_[superclass] == State::Open) refuse(superclass);
    if (states_[superclass] == State::New) return enter(superclass);
    raise(step, levels_[superclass] + 1);
  }

  /// The class is at least on that level, counted from those without superclasses.
  void raise(const Step& step, std::size_t level) {
    if (level <= levels_[step.index]) return;
    levels_[step.index] = level;
    if (level > deepestClass)
      context_.fail("snapshot.too-deep", {classes_, step.index},
                    "the class " + inQuotes(identityAt(step.index)) + " has more than " +
                        std::to_string(deepestClass) + " levels of superclasses");
  }

  [[noreturn]] void refuse(std::size_t repeated) const {
    const JsonPointer last(classes_, trail_.back().index);
    const JsonPointer superclasses(last, "superclasses");
    const JsonPointer culprit(superclasses, trail_.back().nextSuperclass - 1);
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
  const JsonPointer classes_{root, "classes"};
  std::vector<State> states_;
  /// Of each class: 1 without superclasses, else one more than that of the highest of them.
  std::vector<std::size_t> levels_;
  std::vector<Step> trail_;
};

/// One text per class, whichever of its names is given.
std::string oneNameOf(const CheckContext& context, const std::string& name, const JsonPointer& pointer) {
  if (const auto index = context.classes.find(name)) {
    const ClassDescription& found = context.description.classes[*index];
    return identityOf(found.component, found.name);
  }
  if (context.foreignClass(name) == nullptr && !builtInClassCode(name))
    context.requireClass(name, pointer, "the preceded class");
  return name;
}

}  // namespace

void checkClassNames(CheckContext& context) {
  const JsonPointer classes(root, "classes");
  for (std::size_t index = 0; index < context.description.classes.size(); ++index)
    checkNamesOf(context, context.description.classes[index], index, {classes, index});
}

void checkClassReferences(CheckContext& context) {
  forEach(context.description.classes, root, "classes",
          [&](const ClassDescription& described, const JsonPointer& here) {
            checkReferencesOf(context, described, here);
          });
}

void checkSuperclassCycles(const CheckContext& context) { CycleSearch(context).run(); }

void checkPrecedence(const CheckContext& context) {
  std::set<std::pair<std::string, std::string>> met;
  const auto checkPair = [&](const std::string& first, const std::string& preceded, const JsonPointer& here) {
    const std::string second = oneNameOf(context, preceded, here);
    // Before the look-up, which so finds also a class that would precede itself.
    met.emplace(first, second);
    if (met.contains({second, first})) {
      context.fail("snapshot.conflicting-precedence", here,
                   inQuotes(first) + " and " + inQuotes(second) + " would precede each other");
    }
  };
  forEach(context.description.classes, root, "classes",
          [&](const ClassDescription& described, const JsonPointer& oneClass) {
            const std::string first = identityOf(described.component, described.name);
            forEach(described.precedence, oneClass, "precedence",
                    std::bind_front(checkPair, std::cref(first)));
          });
}

}  // namespace embedded::snapshot
