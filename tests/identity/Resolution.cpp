#include <contextdata/KCOSContextData/ResolvedClassID.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "tests/support/Table.h"
#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace {

using KCOSContextData::ResolvedClassID;

/// Words for scopes: the debugger's focus, the executing function ("-" before it: the stack cannot be queried), the
/// active scopes ("-": not eligible).
embedded::Description withScopes(const std::string& focus, const std::string& executing,
                                 const std::string& active) {
  embedded::Description world = worldFile("tests/identity/functions.json");
  world.scopes.bridge = focus != "no bridge";
  if (world.scopes.bridge && focus != "none") world.scopes.debugger = {focus, 7, 9};
  world.scopes.queryable = !executing.empty() && executing[0] != '-';
  world.scopes.executing = executing.substr(executing.starts_with('-') ? 1 : 0);
  std::istringstream words(active);
  for (std::string word; words >> word;)
    world.scopes.active.push_back({word.substr(word[0] == '-' ? 1 : 0), word[0] != '-'});
  return world;
}

/// The host operations that a question calls, a letter each; without fetching the dispatcher, which may happen at any
/// time, and looking up the empty name, which may as well be left out.
std::string lettersOf(World& world, const std::function<void()>& ask) {
  static const auto letters = rowsOf<2>("tests/identity/tables.rows", "Resolution.Letters");
  world.host.startLog();
  ask();
  std::string all;
  for (const embedded::Call& call : world.host.takeLog()) {
    if (call.arguments == "\"\"") continue;
    const auto letter = std::find_if(letters.begin(), letters.end(),
                                     [&](const auto& row) { return call.operation.ends_with(row[0]); });
    all += letter == letters.end() ? call.operation : (*letter)[1];
  }
  return all;
}

// Context, focus, executing function, active scopes; the answer and the questions.
TEST(Resolution, TakesTheFirstScopeThereIs) {
  for (const auto& row : rowsOf<6>("tests/identity/tables.rows", "Resolution.TakesTheFirstScopeThereIs")) {
    World world(withScopes(row[1], row[2], row[3]));
    const std::u16string context = wide(row[0]);
    std::string answer;
    EXPECT_EQ(lettersOf(world, [&] { answer = textOf(ResolvedClassID(context, u"Pump")); }), row[5]);
    EXPECT_EQ(answer, row[4]) << row[5];
    const Kfh_KORVAL_fn* noScope = nullptr;
    EXPECT_EQ(lettersOf(world, [&] { answer = textOf(ResolvedClassID(noScope, u"Pump")); }) + answer,
              "tornull");
    ResolvedClassID::DebuggerFocus focus;
    EXPECT_EQ(lettersOf(world, [&] { focus = ResolvedClassID::GetDebuggerFocus(); }),
              row[1] == "no bridge" ? "b"
              : row[1] == "none"    ? "bh"
                                    : "bhd");
    const bool isStopped = row[1] != "no bridge" && row[1] != "none";
    EXPECT_EQ(focus.name, isStopped ? wide(row[1]) : u"");
    EXPECT_TRUE(!isStopped || (focus.first == 7 && focus.second == 9));
  }
}

TEST(Resolution, AsksTheResolverNothingAfterAFailedSearchForAScope) {
  for (const auto& [operation] : rowsOf<1>("tests/identity/tables.rows",
                                           "Resolution.AsksTheResolverNothingAfterAFailedSearchForAScope")) {
    World world(withScopes("none", "-running", "outer"));
    world.host.setFault({operation, 1, false, [] { throw std::runtime_error("made to fail"); }});
    std::string answer;
    const auto ask = [&] { answer = textOf(ResolvedClassID(u"elsewhere", u"Pump")); };
    EXPECT_EQ(lettersOf(world, ask).find('r'), std::string::npos) << operation;
    EXPECT_TRUE(world.host.clearFault()) << operation;
    EXPECT_EQ(answer, "Pump") << operation;
  }
}

// The answers with the switch on and off, and the questions in a context and in a scope, with the switch on. The name is
// looked at before the switch, and the switch before anything else.
TEST(Resolution, OfTypedNamesAndObjects) {
  World world(worldFile("tests/identity/names.json"));
  const Kfh_KORVAL_fn* tune = world.host.function("tune");
  for (const auto& row : rowsOf<5>("tests/identity/tables.rows", "Resolution.OfTypedNamesAndObjects")) {
    const std::u16string name = wide(row[0]);
    std::string inContext, inScope;
    for (const bool on : {true, false}) {
      world.host.setComponents(on);
      const auto asked = [&](const std::string& letters) {
        return on || letters.size() < 2 ? letters : "toi";
      };
      EXPECT_EQ(lettersOf(world, [&] { inContext = textOf(ResolvedClassID(u"tune", name)); }), asked(row[3]));
      EXPECT_EQ(lettersOf(world, [&] { inScope = textOf(ResolvedClassID(tune, name)); }), asked(row[4]));
      EXPECT_EQ(inContext, row[on ? 1 : 2]);
      EXPECT_EQ(inScope, row[on ? 1 : 2]);
    }
  }
  EXPECT_EQ(textOf(ResolvedClassID(u"tune", std::u16string(1, char16_t{0xD800}))), "\uFFFD");
  world.host.setComponents(true);
  EXPECT_EQ(textOf(ResolvedClassID(world.host.variable("pump").get())), "plant:lab.Pump");
  EXPECT_EQ(textOf(ResolvedClassID(world.host.variable("one").get())), "null");
  EXPECT_EQ(textOf(ResolvedClassID(static_cast<const kxArray_tag*>(nullptr))), "null");
}

/// The identifier; "!" when the name is refused under that narrow name.
std::string legacy(const auto& name, const std::string& narrow) {
  std::string id;
  const std::string thrown = thrownBy([&] { id = textOf(ResolvedClassID::fromLegacyString(name)); });
  return thrown == "bad class name: " + narrow ? "!" : thrown + id;
}

// The legacy class, the name that a user sees for the text as an identifier, and whether it is resolved.
TEST(Resolution, OfKnownAndLegacyNames) {
  World world(worldFile("tests/identity/names.json"));
  for (const auto& row : rowsOf<4>("tests/identity/tables.rows", "Resolution.OfKnownAndLegacyNames")) {
    const auto known = ResolvedClassID::fromKnownResolvedClassID(row[0]);
    EXPECT_EQ(textOf(known), row[0]);
    EXPECT_EQ(textOf(ResolvedClassID::fromKnownResolvedClassID(wide(row[0]))), row[0]);
    EXPECT_EQ(legacy(row[0], row[0]), row[1]) << row[0];
    EXPECT_EQ(legacy(wide(row[0]), row[0]), row[1]) << row[0];
    EXPECT_EQ(known.getComponentQualifiedName(), wide(row[0]));
    EXPECT_EQ(known.getNonComponentQualifiedName(), wide(row[2]));
    EXPECT_EQ(shown(ResolvedClassID::isAlreadyResolved(row[0])), row[3]) << row[0];
    EXPECT_EQ(shown(ResolvedClassID::isAlreadyResolved(wide(row[0]))), row[3]) << row[0];
  }
}

TEST(Resolution, OfNamesThatAreNotAsciiAndOfNoName) {
  World world(worldFile("tests/identity/names.json"));
  EXPECT_EQ(legacy(std::string("lab.Düse"), "lab.Düse"), "!");
  EXPECT_EQ(legacy(std::u16string(u"lab.Düse"), "lab.D?se"), "!");
  EXPECT_EQ(textOf(ResolvedClassID::fromKnownResolvedClassID(u"lab.Düse")), "lab.D?se");
  EXPECT_EQ(ResolvedClassID::fromKnownResolvedClassID("lab.Düse").getComponentQualifiedName(), u"lab.Düse");
  const auto none = ResolvedClassID::fromKnownResolvedClassID("");
  EXPECT_EQ(textOf(none) + textOf(ResolvedClassID::fromKnownResolvedClassID(u"")), "nullnull");
  EXPECT_EQ(legacy(std::string(), "") + legacy(std::u16string(), ""), "!!");
  EXPECT_FALSE(ResolvedClassID::isAlreadyResolved(""));
  std::u16string both;
  const auto ask = [&] { both = none.getComponentQualifiedName() + none.getNonComponentQualifiedName(); };
  EXPECT_EQ(world.asked(ask) + shown(both), "");
}

}  // namespace
