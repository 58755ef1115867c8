// Worlds of hostile shape and size: the check is linear, and nothing recurses along them.

#include <gtest/gtest.h>

#include "embedded/Host.h"
#include "tests/snapshot/Faults.h"
#include "tests/support/Growth.h"

namespace {

/// A chain of classes C0 < C1 < ...; the last one derives from `top`, in quotes.
std::string chain(std::size_t length, const std::string& top, const std::string& more = "") {
  const std::string last = std::to_string(length - 1);
  return R"({"format": 1, "classes": [)" +
         repeated(R"({"name": "C#", "properties": ["p#"], "superclasses": ["C@"]})", length - 1) +
         R"(, {"name": "C)" + last + R"(", "properties": ["p)" + last + R"("], "superclasses": [)" + top +
         R"(]}], "workspace": [{"name": "x", "value": {"object": "C0", "properties": {"p)" + last +
         R"(": 1}}})" + more + "]}";
}

TEST(BigWorlds, AChainOfTenThousandSuperclassesIsFineAndNoLongerOne) {
  EXPECT_EQ(faultOfText(chain(10000, "")).shown, "");
  EXPECT_EQ(faultOfText(chain(10001, "")).shown, "snapshot.too-deep /classes/0");
}

TEST(BigWorlds, ObjectsOfDeepClassesHaveWhatTheyInherit) {
  const auto withObjects = [](const std::string& property) {
    return chain(2000, "",
                 "," + repeated(R"({"name": "v#", "value": {"object": "C#", "properties": {")" + property +
                                    R"(": 1}}})",
                                2000));
  };
  EXPECT_EQ(faultOfText(withObjects("p1999")).shown, "");
  EXPECT_EQ(faultOfText(withObjects("p1998")).shown,
            "snapshot.unknown-property /workspace/2000/value/properties/p1998")
      << "the last class is above the one that has it";
}

TEST(BigWorlds, ALongCycleIsFoundAndNamed) {
  const Fault fault = faultOfText(chain(20000, "\"C5\""));
  EXPECT_EQ(fault.shown, "snapshot.superclass-cycle /classes/19999/superclasses/0");
  EXPECT_NE(fault.reason.find("C5 -> C6 -> "), std::string::npos);
  EXPECT_NE(fault.reason.find("(19985 more) -> C5"), std::string::npos) << fault.reason;
}

// Every class derives from both classes of the next layer: 2 to the 40th ways lead to the top.
TEST(BigWorlds, ManyWaysToOneClassAreOneClass) {
  const std::string world =
      R"({"format": 1, "classes": [)" +
      repeated(
          R"({"name": "A#", "superclasses": ["A@", "B@"]}, {"name": "B#", "superclasses": ["A@", "B@"]})",
          39) +
      R"(, {"name": "A39"}, {"name": "B39"}])";
  const auto faultOfObject = [&](const std::string& more) {
    return faultOfText(world + R"(, "workspace": [{"name": "x", "value": {"object": "A0")" + more + "}}]}");
  };
  EXPECT_EQ(faultOfObject("").shown, "");
  EXPECT_EQ(faultOfObject(R"(, "properties": {"q": 1})").shown,
            "snapshot.unknown-property /workspace/0/value/properties/q");
}

/// Classes of 20 properties each, a quarter of them with superclasses.
std::string manyMembers(std::size_t classes) {
  const std::string members =
      R"("properties": [)" +
      repeated(R"({"name": "Property#", "access": "protected", "hidden": false, "type": "double"})", 20) +
      "]";
  const std::string part = R"({"name": "lab.A#", )" + members + R"(}, {"name": "lab.B#", )" + members + R"(},
    {"name": "lab.C#", )" + members +
                           R"(}, {"name": "lab.D#", "superclasses": ["lab.A#", "lab.C#"], )" + members + "}";
  return R"({"format": 1, "classes": [)" + repeated(part, classes / 4) + "]}";
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
