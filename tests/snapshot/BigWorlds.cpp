// Worlds of hostile shape and size: the check is linear, and nothing recurses along them.

#include <gtest/gtest.h>

#include "embedded/Host.h"
#include "tests/snapshot/Faults.h"
#include "tests/support/Growth.h"

namespace {

/// A chain of classes C0 < C1 < ...; the last one derives from `top`.
std::string chain(std::size_t length, const std::string& top) {
  std::string text = R"({"format": 1, "classes": [)";
  for (std::size_t index = 0; index < length; ++index) {
    const std::string superclass =
        index + 1 < length ? "\"C" + std::to_string(index + 1) + '"' : (top.empty() ? "" : '"' + top + '"');
    text += (index ? "," : "") + std::string(R"({"name": "C)") + std::to_string(index) +
            R"(", "properties": ["p)" + std::to_string(index) + R"("], "superclasses": [)" + superclass +
            "]}";
  }
  return text + R"(], "workspace": [{"name": "x", "value": {"object": "C0", "properties": {"p)" +
         std::to_string(length - 1) + R"(": 1}}}]})";
}

TEST(BigWorlds, AChainOfTenThousandSuperclassesIsFineAndNoLongerOne) {
  EXPECT_FALSE(faultOfText(chain(10000, "")));
  const auto fault = faultOfText(chain(10001, ""));
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->code(), "snapshot.too-deep");
  EXPECT_EQ(fault->pointer(), "/classes/0");
}

TEST(BigWorlds, ObjectsOfDeepClassesHaveWhatTheyInherit) {
  const auto withObjects = [](const std::string& property) {
    std::string text = chain(2000, "");
    text.resize(text.size() - 2);
    for (int index = 0; index < 2000; ++index)
      text += R"(, {"name": "v)" + std::to_string(index) + R"(", "value": {"object": "C)" +
              std::to_string(index) + R"(", "properties": {")" + property + "\": 1}}}";
    return text + "]}";
  };
  EXPECT_FALSE(faultOfText(withObjects("p1999")));
  const auto fault = faultOfText(withObjects("p1998"));
  ASSERT_TRUE(fault) << "the last class is above the one that has it";
  EXPECT_EQ(fault->pointer(), "/workspace/2000/value/properties/p1998");
}

TEST(BigWorlds, ALongCycleIsFoundAndNamed) {
  const auto fault = faultOfText(chain(20000, "C5"));
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->code(), "snapshot.superclass-cycle");
  EXPECT_EQ(fault->pointer(), "/classes/19999/superclasses/0");
  EXPECT_NE(fault->reason().find("C5 -> C6 -> "), std::string::npos);
  EXPECT_NE(fault->reason().find("(19985 more) -> C5"), std::string::npos) << fault->reason();
}

// Every class derives from both classes of the next layer: 2 to the 40th ways lead to the top.
TEST(BigWorlds, ManyWaysToOneClassAreOneClass) {
  constexpr std::size_t layers = 40;
  std::string text;
  for (std::size_t layer = 0; layer < layers; ++layer) {
    const std::string next = std::to_string(layer + 1);
    const std::string superclasses =
        layer + 1 < layers ? "\"A" + next + "\", \"B" + next + "\"" : std::string();
    for (const char* side : {"A", "B"}) {
      text += (text.empty() ? "" : ",") + std::string(R"({"name": ")") + side + std::to_string(layer) +
              R"(", "superclasses": [)" + superclasses + "]}";
    }
  }
  const std::string world = R"({"format": 1, "classes": [)" + text + "]";
  EXPECT_FALSE(faultOfText(world + R"(, "workspace": [{"name": "x", "value": {"object": "A0"}}]})"));
  const auto fault = faultOfText(
      world + R"(, "workspace": [{"name": "x", "value": {"object": "A0", "properties": {"q": 1}}}]})");
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->code(), "snapshot.unknown-property");
}

/// Classes of 20 properties each, most of them with a superclass.
std::string manyMembers(int classes) {
  std::string text = R"({"format": 1, "classes": [)";
  for (int index = 0; index < classes; ++index) {
    text += (index ? ",\n" : "") + std::string(R"({"name": "lab.Class)") + std::to_string(index) + '"';
    if (index >= 100) text += R"(, "superclasses": ["lab.Class)" + std::to_string(index / 3) + "\"]";
    text += R"(, "properties": [)";
    for (int member = 0; member < 20; ++member) {
      text += (member ? "," : "") + std::string(R"({"name": "Property)") + std::to_string(member) +
              R"(", "access": "protected", "hidden": false, "type": "double"})";
    }
    text += "]}";
  }
  return text + "]}";
}

TEST(BigWorlds, ManyMembersAreReadInLinearTime) {
  const std::string some = manyMembers(500);
  const std::string many = manyMembers(4000);
  std::size_t members = 0;
  for (const auto& oneClass : embedded::readSnapshotText(many, "").classes)
    members += oneClass.properties.size();
  EXPECT_EQ(members, 80000U);
  EXPECT_TRUE(
      isLinear([&] { embedded::readSnapshotText(some, ""); }, [&] { embedded::readSnapshotText(many, ""); }));
}

}  // namespace
