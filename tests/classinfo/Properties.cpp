// What the record of one property says, and the extents that its declared size means.

#include <gtest/gtest.h>

#include <boost/algorithm/string/split.hpp>

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

TEST(Properties, NumbersBeyond32BitsDoNoHarm) {
  for (const char* number :
       {R"(["NaN"])", R"(["Inf"])", R"(["-Inf"])", "1e300", "-1e300", "2147483648", "-2147483649"}) {
    World world = worldWith(R"("type": "t", "values": [)" + std::string(number) + ", 7]");
    const auto properties = Record("C").getProperties({});
    ASSERT_EQ(properties.size(), 1U) << number;
    EXPECT_EQ(shown(properties[0].possibleValues.back()), "7") << number;
  }
}

TEST(Properties, GettersAndTheSecondFlag) { expectRows("Properties.GettersAndTheSecondFlag"); }

// What throws in the query of the getter or of the second flag counts as yes, and nothing else does.
TEST(Properties, FailuresOfTheTwoFlagsCountAsYes) {
  World world = worldWith(R"("type": "t", "optimized": {},
    "attributes": [{"name": "QRDGetSet", "type": "logical scalar", "value": false}])");
  for (const auto& [operation, expected] : std::vector<std::pair<std::string, std::string>>{
           {"kcos::COSOptimizedPropInfo::hasCustomGetter", "t getter unflagged"},
           {"kcos::COSInterface::findAttribute", "t getter unflagged"},
           {"kcos::COSInterface::getAttributeValue", "t getter unflagged"},
           {"COSGetPublicClient", "t getter unflagged"},
           {"kcos::COSOptimizedPropInfo::getOptimizedFlag", "t"},
           {"kcos::COSPropT::isDependent", "nothing"},
           {"kcos::COSPropT::isVisible", "nothing"}}) {
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

// The texts of a row stand between "|".
TEST(SizeStrings, OneEntry) {
  const std::pair<std::u16string, std::string> rows[]{
      {u"0|000| 0", "0"},
      {u"7|007| 7 |\t\n7\v|\f\r7", "7"},
      {u"18446744073709551614", "18446744073709551614"},
      {u":|n|Inf|NaN|e3|a_1Z|Z9|18446744073709551615", "any"},
      {u" : | n|n |::|_n|n-1|n m|\u00e9|n\u00e9||  |1 2|+1|-1|2.5|1e3|3n|\u00a03|\uff13|\u0663", ""},
      {u"18446744073709551616|99999999999999999999", ""},
      {{u'3', u'\0', u'|', u'\0', u'3', u'|', u'n', u'\0'}, ""}};
  for (const auto& [row, expected] : rows) {
    std::vector<std::u16string> texts;
    for (const std::u16string& text : boost::split(texts, row, [](char16_t unit) { return unit == u'|'; })) {
      EXPECT_EQ(extentsOf({text}), expected) << shown(text);
      EXPECT_EQ(extentsOf({u"2", text, u"n"}), expected.empty() ? "" : "2," + expected + ",any")
          << shown(text);
    }
  }
  EXPECT_EQ(extentsOf({}), "");
}

TEST(SizeStrings, LongOnes) {
  EXPECT_EQ(extentsOf({std::u16string(1000000, u'9')}), "");
  EXPECT_EQ(extentsOf({std::u16string(1000000, u'n')}), "any");
  EXPECT_EQ(extentsOf({std::u16string(1000000, u'0') + u"5"}), "5");
  EXPECT_EQ(extentsOf({std::u16string(1000000, u' ') + u"5"}), "5");
  EXPECT_EQ(KCOSContextData::PropertyInfo::castSizeStringToIntegers(std::vector<std::u16string>(100000, u"1"))
                .size(),
            100000U);
}

TEST(SizeStrings, NeedNoActiveHost) { EXPECT_EQ(extentsOf({u" 3 ", u":"}), "3,any"); }

}  // namespace
