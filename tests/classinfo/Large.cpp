// Large and deep worlds: time grows with the number of members, and depth costs no stack.

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <memory>

#include "tests/classinfo/Shown.h"

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
void addPair(Description& world, const std::string& suffix, int first, int count) {
  for (const char* name : {"Base", "Own"}) {
    ClassDescription& made = addClass(world, name + suffix, {});
    if (*name == 'O') made.superclasses = {"Base" + suffix};
    for (int at = first; at < first + count; ++at) {
      made.properties.emplace_back().name = made.methods.emplace_back().name = "member" + std::to_string(at);
      made.methods.back().hidden = *name == 'O';
    }
  }
}

using Records = std::vector<std::unique_ptr<Record>>;

/// The processor's time for a query of all these records, which finds so many members.
template <class Query>
std::clock_t timeOf(const Records& records, std::size_t expected, Query query) {
  const std::clock_t start = std::clock();
  std::size_t found = 0;
  for (const auto& record : records) found += query(*record);
  EXPECT_EQ(found, expected);
  return std::clock() - start;
}

/// Whether the one query costs at most 20/16 of `factor` of the many, in one of some tries: other programs on the machine
/// disturb a try, but they make none succeed that would not.
template <class Query>
bool isLinear(const Records& one, const Records& many, std::size_t found, std::size_t factor, Query query) {
  const std::clock_t start = std::clock();
  for (int tries = 0; tries < 20 && std::clock() - start < 10 * CLOCKS_PER_SEC; ++tries) {
    const std::clock_t ofMany = timeOf(many, 16 * found, query), ofOne = timeOf(one, factor * found, query);
    if (16 * 16 * ofOne <= 20 * static_cast<std::clock_t>(factor) * ofMany) return true;
  }
  return false;
}

// 65,536 members over as many cost at most 20 times what 4,096 over 4,096 do: an average of 16 queries of these, so that
// both read as much memory. A quarter of the size is tried first, since whatever grows faster would take minutes.
TEST(Large, ShadowingAndMaskingGrowWithTheNumberOfMembers) {
  constexpr int parts = 16, size = 4096;
  Description world;
  Records many;
  addPair(world, "4", 0, 4 * size);
  addPair(world, "16", 0, 16 * size);
  for (int part = 0; part < parts; ++part) addPair(world, "Part" + std::to_string(part), part * size, size);
  World host(world);
  for (int part = 0; part < parts; ++part)
    many.push_back(std::make_unique<Record>("OwnPart" + std::to_string(part)));
  for (const std::size_t factor : {4U, 16U}) {
    Records one;
    one.push_back(std::make_unique<Record>("Own" + std::to_string(factor)));
    ASSERT_TRUE(
        isLinear(one, many, size, factor, [](const Record& r) { return r.getProperties({}).size(); }));
    ASSERT_TRUE(isLinear(one, many, 0, factor, [](const Record& r) {
      return r.getMethods({0}, MethodInfo::GetContext::Any, nullptr).size();
    }));
  }
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
