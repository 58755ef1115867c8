// Large and deep worlds: time grows with the number of members, and depth costs no stack.

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <limits>
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

/// The processor's time for a query of all these records, which finds so many members: the shortest of some runs.
template <class Query>
std::clock_t timeOf(const Records& records, std::size_t expected, Query query) {
  std::clock_t shortest = std::numeric_limits<std::clock_t>::max(), all = 0;
  for (int run = 0; run < 7 && all < 2 * CLOCKS_PER_SEC; ++run) {
    const std::clock_t start = std::clock();
    std::size_t found = 0;
    for (const auto& record : records) found += query(*record);
    shortest = std::min(shortest, std::clock() - start);
    all += std::clock() - start;
    EXPECT_EQ(found, expected);
  }
  return shortest;
}

// 65,536 members over as many cost at most 20 times what 4,096 over 4,096 do: an average of 16 queries of these, so that
// both read as much memory. A quarter of the size is tried first, since whatever grows faster would take minutes.
TEST(Large, ShadowingAndMaskingGrowWithTheNumberOfMembers) {
  constexpr int parts = 16, size = 4096;
  Description world;
  addPair(world, "4", 0, 4 * size);
  addPair(world, "16", 0, 16 * size);
  for (int part = 0; part < parts; ++part) addPair(world, "Part" + std::to_string(part), part * size, size);
  World host(world);
  Records many;
  for (int part = 0; part < parts; ++part)
    many.push_back(std::make_unique<Record>("OwnPart" + std::to_string(part)));
  const auto properties = [](const Record& record) { return record.getProperties({}).size(); };
  const auto methods = [](const Record& record) {
    return record.getMethods({0}, MethodInfo::GetContext::Any, nullptr).size();
  };
  const auto timeOfProperties = timeOf(many, parts * size, properties),
             timeOfMethods = timeOf(many, 0, methods);
  for (const int factor : {4, 16}) {
    Records one;
    one.push_back(std::make_unique<Record>("Own" + std::to_string(factor)));
    ASSERT_LE(parts * 4 * timeOf(one, factor * size, properties), 5 * factor * timeOfProperties) << factor;
    ASSERT_LE(parts * 4 * timeOf(one, 0, methods), 5 * factor * timeOfMethods) << factor;
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
