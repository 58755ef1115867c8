// What the record of one property says, and the extents that its declared size means.

#include <gtest/gtest.h>

#include "tests/classinfo/Shown.h"
#include "tests/support/Table.h"

std::string shownType(const KCOSContextData::PropertyInfo& property) {
  std::string text = shown(property.type);
  if (!property.sizeStrings.empty()) text += "[" + shownList(property.sizeStrings) + "]";
  if (!property.validationFunctions.empty()) text += "{" + shownList(property.validationFunctions) + "}";
  if (property.possibleValuesKind != 0) text += " " + std::to_string(property.possibleValuesKind) + ":";
  for (const auto& value : property.possibleValues) text += " '" + shown(value) + "'";
  if (property.isDependent) text += " dependent";
  if (property.hasCustomGetter) text += " getter";
  return text + (property.optimizedPropertyFlag ? "" : " unflagged");
}

namespace {

World worldWith(const std::string& keys) {
  return World(R"({"format": 1, "classes": [
    {"name": "C", "properties": [{"name": "p", )" +
               keys + R"(}]}, {"name": "U"},
    {"name": "lab.E", "enumeration": true,
     "members": ["On", "Off", {"name": "Test", "hidden": true}, {"name": null}]}]})");
}

void expectRows(const std::string& table) {
  for (const auto& [keys, expected] : rowsOf<2>("tests/classinfo/tables.rows", table)) {
    World world = worldWith(keys);
    const auto properties = Record("C").getProperties({});
    ASSERT_EQ(namesOf(properties), "p") << keys;
    EXPECT_EQ(shownType(properties[0]), expected) << keys;
  }
}

TEST(Properties, TypeSizeAndFunctions) { expectRows("Properties.TypeSizeAndFunctions"); }

TEST(Properties, KindsOfPossibleValues) { expectRows("Properties.KindsOfPossibleValues"); }

TEST(Properties, GettersAndTheSecondFlag) { expectRows("Properties.GettersAndTheSecondFlag"); }

// What throws in the query of the getter or of the second flag counts as yes, and nothing else does.
TEST(Properties, FailuresOfTheTwoFlagsCountAsYes) {
  World world = worldWith(R"("type": "t", "optimized": {},
    "attributes": [{"name": "QRDGetSet", "type": "logical scalar", "value": false}])");
  for (const auto& [operation, expected] :
       rowsOf<2>("tests/classinfo/tables.rows", "Properties.FailuresOfTheTwoFlagsCountAsYes")) {
    world.host.setFault({operation, 1, false, [] { throw 42; }});
    const auto properties = Record("C").getProperties({});
    EXPECT_TRUE(world.host.clearFault()) << operation;
    EXPECT_EQ(properties.empty() ? "nothing" : shownType(properties[0]), expected) << operation;
  }
}

// A property is asked only for what its answer needs, in this order.
TEST(Properties, WhatIsAskedAndWhen) {
  World world = worldWith(R"("set": "private", "attributes": [{"name": "QRDGetSet", "type": "logical"}])");
  const Record record("C");
  const auto asked = [&](const KCOSContextData::PropertyInfo::GetOptions& options) {
    const std::string all = world.asked([&] { record.getProperties(options); });
    return all.substr(all.find("cosiToProp"));
  };
  const std::string begin =
      "cosiToProp getName cosiClassOfMember getID getMemberGetAccess getMemberSetAccess ";
  const std::string end =
      "getDataType to_ustring to_ustring isDependent makeInterned findAttribute getDataType getID";
  EXPECT_EQ(asked({}), begin + end + " isVisible");
  EXPECT_EQ(asked({.includeHidden = true}), begin + end);
  EXPECT_EQ(asked({{1}, {0, 1}, &record, false}), begin + "getExtendedGetAccess getExtendedSetAccess");
  EXPECT_EQ(asked({{0}, {1, 7}, nullptr, false}),
            "cosiToProp getName cosiClassOfMember getID getMemberSetAccess");
}

std::string extentsOf(const std::vector<std::u16string>& texts) {
  std::string all;
  for (const std::size_t extent : KCOSContextData::PropertyInfo::castSizeStringToIntegers(texts))
    all += (all.empty() ? "" : ",") + (extent + 1 == 0 ? "any" : std::to_string(extent));
  return all;
}

// None of it needs an active host.
TEST(SizeStrings, OneEntry) {
  for (const Cells& row : rowsOf("tests/classinfo/tables.rows", "SizeStrings.OneEntry"))
    for (std::size_t at = 1; at < row.size(); ++at) {
      const std::string &expected = row[0], text = row[at].substr(0, 50);
      EXPECT_EQ(extentsOf({wide(row[at])}), expected) << text;
      EXPECT_EQ(extentsOf({u"2", wide(row[at]), u"n"}), expected.empty() ? "" : "2," + expected + ",any")
          << text;
    }
  EXPECT_EQ(extentsOf({}), "");
  EXPECT_EQ(extentsOf(std::vector<std::u16string>(100000, u"1")).size(), 199999U);
}

}  // namespace
