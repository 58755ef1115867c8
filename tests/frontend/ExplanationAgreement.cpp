// Explanations of every name of generated worlds: they say what completion offers, and each reason that names a way to the
// name is followed.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

#include "frontend/Explanation.h"
#include "tests/frontend/LineCases.h"
#include "tests/support/Text.h"

namespace {

using embedded::ClassDescription;
using embedded::Description;
using frontend::Explanation;
using frontend::Rule;

/// Classes that derive from it complete no methods after the dot. Every generated world has it.
constexpr const char* mixin = "korval.mixin.internal.indexing.DisallowCompletionOfDotMethodNames";

/// A world that a seed stands for: a few classes, and for each that can have one an object, whose name is "o" and the
/// first two letters of the class's. Members are called a, b, c, plus, subsref or like their class.
class Seeded {
 public:
  explicit Seeded(std::uint32_t seed) : random_(seed) {}

  Description world() {
    Description world;
    for (int at = 0, count = below(4) + 2; at < count; ++at) addClass(world, at);
    world.classes.push_back({.name = mixin});
    for (const ClassDescription& made : world.classes)
      if (!made.broken)
        world.workspace.push_back({"o" + made.name.substr(0, 2),
                                   {embedded::ObjectValue{made.name, {}, made.enumeration ? "m" : ""}}});
    return world;
  }

 private:
  int below(int limit) { return static_cast<int>(random_() % static_cast<std::uint32_t>(limit)); }
  bool oneIn(int count) { return below(count) == 0; }

  void addClass(Description& world, int at) {
    ClassDescription made;
    made.name = at == 0 && oneIn(8) ? "table" : "C" + std::to_string(at);
    for (const ClassDescription& above : world.classes)
      if (oneIn(2) && !above.enumeration) made.superclasses.push_back(above.name);
    if (oneIn(10)) made.superclasses.push_back(mixin);
    made.order = oneIn(2) ? embedded::WalkOrder::OwnFirst : embedded::WalkOrder::InheritedFirst;
    made.enumeration = oneIn(8);
    made.broken = !made.enumeration && oneIn(10);
    if (made.enumeration) made.members = {{.name = "m"}, {.name = "h", .hidden = true}};
    for (int member = below(5); member > 0; --member) addMembers(world, made);
    world.classes.push_back(made);
  }

  void addMembers(const Description& world, ClassDescription& to) {
    static const char* const names[] = {"a", "b", "c", "plus", "subsref"};
    embedded::PropertyDescription property{.name = names[below(3)]};
    property.get = access(world, to);
    property.set = oneIn(3) ? embedded::Access{5, {}} : access(world, to);
    property.hidden = oneIn(3);
    if (oneIn(4)) property.getter = "1";
    if (std::ranges::count(to.properties, property.name, &embedded::PropertyDescription::name) == 0)
      to.properties.push_back(property);
    to.methods.push_back({.name = oneIn(6) ? to.name : names[below(5)],
                          .access = access(world, to),
                          .isStatic = oneIn(3),
                          .hidden = oneIn(3)});
  }

  embedded::Access access(const Description& world, const ClassDescription& here) {
    static const int levels[] = {0, 0, 0, 1, 2, 2, 4, 3};
    embedded::Access access{levels[below(8)], {}};
    if (access.level == 4 || oneIn(6))
      access.classes = {world.classes.empty() ? here.name
                                              : world.classes[random_() % world.classes.size()].name};
    return access;
  }

  std::mt19937 random_;
};

/// What is asked: after an object, after its class, or as a function of the object.
struct Line {
  std::u16string text;
  std::size_t cursor = 0;
};

class Checked {
 public:
  Checked(const Description& world, frontend::Session& session, frontend::CodePolicy policy)
      : world_(world), session_(session) {
    options_.policy = policy;
    options_.limit = 10000;
    for (const auto& variable : world.workspace) variables_.insert(variable.name);
  }

  void check() {
    for (const ClassDescription& asked : world_.classes) {
      const auto lines = linesOf(asked);
      for (const Line& line : lines)
        for (const std::string& caller : andClasses({""}))
          for (const bool hidden : {false, true}) check(asked, line, lines, caller, hidden);
    }
  }

  std::map<Rule, std::size_t> counts;
  std::size_t followed = 0;

 private:
  std::vector<Line> linesOf(const ClassDescription& asked) const {
    std::vector<Line> lines{{wide(asked.name + "."), asked.name.size() + 1}};
    const std::string variable = "o" + asked.name.substr(0, 2);
    if (!variables_.contains(variable)) return lines;
    lines.push_back({wide(variable + "."), variable.size() + 1});
    lines.push_back({wide("(" + variable + ")"), 0});
    return lines;
  }

  void check(const ClassDescription& asked, const Line& line, const std::vector<Line>& lines,
             const std::string& caller, bool hidden) {
    frontend::Options options = options_;
    options.hidden = hidden;
    const auto offered = offers(line, caller, options);
    for (const std::string& name : andClasses({"a", "b", "c", "plus", "subsref", "m", "h", "nowhere"})) {
      if (name == mixin) continue;  // Names in a namespace are not offered by themselves.
      SCOPED_TRACE(shown(line.text) + " " + name + ", class '" + caller + "'" + (hidden ? ", hidden" : ""));
      const Explanation explanation =
          frontend::explain(session_, line.text, line.cursor, wide(name), scopeOf(caller), options);
      ASSERT_EQ(explanation.isOffered, offered.contains(wide(name))) << reasonsOf(explanation);
      ASSERT_EQ(has(explanation, Rule::Offered), explanation.isOffered) << reasonsOf(explanation);
      ASSERT_FALSE(explanation.reasons.empty());
      for (const frontend::Reason& reason : explanation.reasons) ++counts[reason.rule];
      if (caller.empty()) limitAndType(explanation, line, options);
      if (!explanation.isOffered) followReasons(asked, explanation, name, line, lines, caller, options);
    }
  }

  /// The same with room for one candidate, and with something typed that fits no name.
  void limitAndType(const Explanation& explanation, const Line& line, frontend::Options options) {
    static constexpr Rule last[] = {Rule::Unknown, Rule::NotInThisClass, Rule::NotOfferedHere};
    std::string expected = reasonsOf(explanation);
    if (explanation.isOffered) expected.clear();
    if (std::ranges::count(last, explanation.reasons.front().rule) == 0)
      expected = "no-match: 'qq' is typed, which does not fit\n" + expected;
    std::u16string text = line.text;
    text.insert(line.cursor, u"qq");
    const Explanation typed =
        frontend::explain(session_, text, line.cursor + 2, explanation.name, {}, options);
    EXPECT_EQ(reasonsOf(typed), expected);
    counts[Rule::NoMatch] += has(typed, Rule::NoMatch) ? 1 : 0;
    options.limit = 1;
    const auto first = frontend::complete(session_, line.text, line.cursor, {}, options).candidates;
    const bool isFirst = !first.empty() && first[0].label == explanation.name;
    const Explanation limited =
        frontend::explain(session_, line.text, line.cursor, explanation.name, {}, options);
    EXPECT_EQ(limited.isOffered, isFirst);
    EXPECT_EQ(has(limited, Rule::BeyondLimit), explanation.isOffered && !isFirst);
    counts[Rule::BeyondLimit] += has(limited, Rule::BeyondLimit) ? 1 : 0;
  }

  /// Does what the reasons say is in the way, and looks whether the name comes.
  void followReasons(const ClassDescription& asked, const Explanation& explanation, const std::string& name,
                     const Line& line, const std::vector<Line>& lines, const std::string& caller,
                     frontend::Options options) {
    const auto [declarers, listed] = declared(asked, name);
    const auto classes = tree(asked);
    const bool isUnknown = has(explanation, Rule::NotInThisClass) || has(explanation, Rule::Unknown);
    EXPECT_EQ(declarers.empty(), isUnknown) << reasonsOf(explanation);
    if (isUnknown) return;
    const std::tuple<Rule, bool, bool> facts[] = {{Rule::Constructor, true, classes.contains(name)},
                                                  {Rule::Operator, true, name == "plus" || name == "subsref"},
                                                  {Rule::Mixin, true, classes.contains(mixin)},
                                                  {Rule::ExclusionTable, true, classes.contains("table")},
                                                  {Rule::ShadowedBy, false, declarers.size() > 1}};
    bool isFinal = false;
    for (const auto& [rule, ends, isSo] : facts) {
      EXPECT_TRUE(isSo || !has(explanation, rule)) << nameOf(rule);
      isFinal = isFinal || (ends && has(explanation, rule));
    }
    if (isFinal) return;
    options.hidden = options.hidden || has(explanation, Rule::Hidden);
    std::set<std::string> asking{caller};
    if (has(explanation, Rule::AccessLevel)) asking = declarers;
    if (has(explanation, Rule::AccessList)) asking = listed;
    const bool isElsewhere = has(explanation, Rule::Position);
    const auto isOffered = [&](const Line& other) {
      return isElsewhere != (other.text == line.text) && std::ranges::any_of(asking, [&](const auto& who) {
               return offers(other, who, options).contains(wide(name));
             });
    };
    EXPECT_TRUE(std::ranges::any_of(lines, isOffered) || (isElsewhere && lines.size() == 1))
        << reasonsOf(explanation);
    if (asking != std::set{caller} || isElsewhere || !options.hidden) ++followed;
  }

  const std::set<std::u16string>& offers(const Line& line, const std::string& caller,
                                         const frontend::Options& options) {
    const auto key = std::tuple(line.text, caller, options.hidden);
    if (const auto known = offers_.find(key); known != offers_.end()) return known->second;
    auto& labels = offers_[key];
    for (const auto& candidate :
         frontend::complete(session_, line.text, line.cursor, scopeOf(caller), options).candidates)
      labels.insert(candidate.label);
    return labels;
  }

  const ClassDescription& named(const std::string& name) const {
    return *std::ranges::find(world_.classes, name, &ClassDescription::name);
  }

  /// The class and its ancestors.
  std::set<std::string> tree(const ClassDescription& from) const {
    std::set<std::string> names{from.name};
    for (const std::string& superclass : from.superclasses) names.merge(tree(named(superclass)));
    return names;
  }

  /// The classes of the tree that declare a member of that name, and those that the member grants access.
  std::pair<std::set<std::string>, std::set<std::string>> declared(const ClassDescription& asked,
                                                                   const std::string& name) const {
    std::set<std::string> declarers, listed;
    for (const std::string& at : tree(asked)) {
      const ClassDescription& here = named(at);
      const auto use = [&](const auto& members, auto... accesses) {
        for (const auto& member : members) {
          if (member.name != name) continue;
          declarers.insert(here.name);
          (listed.insert((member.*accesses).classes.begin(), (member.*accesses).classes.end()), ...);
        }
      };
      use(here.properties, &embedded::PropertyDescription::get, &embedded::PropertyDescription::set);
      use(here.methods, &embedded::MethodDescription::access);
      use(here.members);
    }
    return {declarers, listed};
  }

  std::vector<std::string> andClasses(std::vector<std::string> names) const {
    for (const ClassDescription& made : world_.classes) names.push_back(made.name);
    return names;
  }

  static bool has(const Explanation& explanation, Rule rule) {
    return std::ranges::count(explanation.reasons, rule, &frontend::Reason::rule) > 0;
  }
  static std::string reasonsOf(const Explanation& explanation) {
    std::string text;
    for (const auto& reason : explanation.reasons)
      text += std::string(nameOf(reason.rule)) + ": " + shown(reason.detail) + "\n";
    return text;
  }
  static frontend::Scope scopeOf(const std::string& caller) { return {u"", wide(caller)}; }

  const Description& world_;
  frontend::Session& session_;
  frontend::Options options_;
  std::set<std::string> variables_;
  std::map<std::tuple<std::u16string, std::string, bool>, std::set<std::u16string>> offers_;
};

/// Small worlds in which each rule is met, the rare ones too.
constexpr std::uint32_t seeds[] = {1, 2, 13, 15, 25, 30};

TEST(ExplanationAgreement, HoldsForEveryNameOfGeneratedWorlds) {
  std::map<Rule, std::size_t> counts;
  std::size_t followed = 0;
  for (const std::uint32_t seed : seeds) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const Description world = Seeded(seed).world();
    embedded::Host host(world);
    const embedded::Activation active(host);
    tools::HostSession session(host);
    TrappedSession trapped(host);
    const bool never = seed % 2 == 0;
    Checked checked(world, never ? static_cast<frontend::Session&>(trapped) : session,
                    never ? frontend::CodePolicy::Never : frontend::CodePolicy::StoredValues);
    checked.check();
    for (const auto& [rule, count] : checked.counts) counts[rule] += count;
    followed += checked.followed;
  }
  const std::map<Rule, std::size_t> least = {
      {Rule::Offered, 800},     {Rule::Unknown, 800},    {Rule::NotInThisClass, 2500},
      {Rule::AccessLevel, 250}, {Rule::AccessList, 80},  {Rule::Hidden, 200},
      {Rule::ShadowedBy, 5},    {Rule::Operator, 150},   {Rule::Constructor, 200},
      {Rule::Position, 500},    {Rule::Mixin, 150},      {Rule::ExclusionTable, 30},
      {Rule::NoMatch, 300},     {Rule::BeyondLimit, 100}};
  for (const auto& [rule, count] : least) EXPECT_GT(counts[rule], count) << nameOf(rule);
  EXPECT_EQ(0U, counts[Rule::NotOfferedHere]) << "here every name has a reason that says more";
  EXPECT_GT(followed, 400U);
}

}  // namespace
