// Large and deep worlds: time grows with the number of members, and depth costs no stack.

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/classinfo/Shown.h"
#include "tests/support/Growth.h"

namespace {

using embedded::ClassDescription;
using embedded::Description;
using KCOSContextData::MethodInfo;

ClassDescription& addClass(Description& world, const std::string& name,
                           std::vector<std::string> superclasses) {
  ClassDescription& made = world.classes.emplace_back();
  made.name = name;
  made.superclasses = std::move(superclasses);
  return made;
}

/// "Own<suffix>" over "Base<suffix>" with as many members of the same names; the methods of Own are hidden.
void addPair(Description& world, const std::string& suffix, std::size_t count) {
  for (const char* name : {"Base", "Own"}) {
    ClassDescription& made = addClass(world, name + suffix, {});
    if (*name == 'O') made.superclasses = {"Base" + suffix};
    for (std::size_t at = 0; at < count; ++at) {
      made.properties.emplace_back().name = made.methods.emplace_back().name = "member" + std::to_string(at);
      made.methods.back().hidden = *name == 'O';
    }
  }
}

// Members over as many of the same names: so many that a comparison of each with each outweighs the copies of the records.
TEST(Large, ShadowingAndMaskingGrowWithTheNumberOfMembers) {
  constexpr std::size_t some = 2048, many = 8 * some;
  Description world;
  addPair(world, "Some", some);
  addPair(world, "Many", many);
  World host(world);
  const Record ofSome("OwnSome"), ofMany("OwnMany");
  const auto properties = [](const Record& record, std::size_t expected) {
    return [&record, expected] { EXPECT_EQ(record.getProperties({}).size(), expected); };
  };
  ASSERT_TRUE(isLinear(properties(ofSome, some), properties(ofMany, many)));
  const auto methods = [](const Record& record) {
    return [&record] { EXPECT_EQ(record.getMethods({0}, MethodInfo::GetContext::Any, nullptr).size(), 0U); };
  };
  EXPECT_TRUE(isLinear(methods(ofSome), methods(ofMany)));
}

TEST(Large, AChainOf500Superclasses) {
  Description world;
  for (int at = 0; at <= 500; ++at) {
    auto& made = addClass(world, "C" + std::to_string(at), {});
    if (at > 0) made.superclasses = {"C" + std::to_string(at - 1)};
    made.properties.emplace_back().name = "p" + std::to_string(at);
    made.methods.emplace_back().name = "m" + std::to_string(at);
  }
  World host(world);
  const Record last("C500");
  const auto properties = last.getProperties({});
  ASSERT_EQ(properties.size(), 501U);
  EXPECT_EQ(shown(properties.front().name) + " " + shown(properties.back().name), "p0 p500");
  EXPECT_EQ(last.getMethods({0}, MethodInfo::GetContext::AfterDot, nullptr).size(), 501U);
  EXPECT_EQ(last.structure.getSuperclasses().size(), 501U);
  EXPECT_TRUE(last.isA(u"C0"));
  EXPECT_TRUE(last.getAttributes(true).attributeList1.empty());
}

TEST(Large, ALatticeOf12Diamonds) {
  Description world;
  addClass(world, "N0", {}).properties.emplace_back().name = "p";
  for (int at = 1; at <= 12; ++at) {
    const std::string below = "N" + std::to_string(at - 1), here = std::to_string(at);
    addClass(world, "L" + here, {below});
    addClass(world, "R" + here, {below});
    addClass(world, "N" + here, {"L" + here, "R" + here});
  }
  World host(world);
  const Record top("N12");
  EXPECT_EQ(top.getProperties({}).size(), 4096U);
  EXPECT_EQ(std::ranges::count(top.structure.getSuperclasses(), u"N0"), 4096);
  EXPECT_TRUE(top.isA(u"N0"));
  EXPECT_FALSE(top.isA(u"nobody"));
}

}  // namespace
