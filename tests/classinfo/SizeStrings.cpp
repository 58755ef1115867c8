#include <gtest/gtest.h>

#include <boost/algorithm/string/split.hpp>

#include "tests/classinfo/Shown.h"

namespace {

using KCOSContextData::PropertyInfo;

std::string extentsOf(const std::vector<std::u16string>& texts) {
  std::string all;
  for (const std::size_t extent : PropertyInfo::castSizeStringToIntegers(texts))
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
  EXPECT_EQ(PropertyInfo::castSizeStringToIntegers(std::vector<std::u16string>(100000, u"1")).size(),
            100000U);
}

TEST(SizeStrings, NeedNoActiveHost) { EXPECT_EQ(extentsOf({u" 3 ", u":"}), "3,any"); }

}  // namespace
