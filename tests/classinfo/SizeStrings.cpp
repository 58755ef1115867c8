#include <gtest/gtest.h>

#include "host/Text.h"
#include "tests/classinfo/Shown.h"
#include "tests/support/Table.h"

namespace {

using KCOSContextData::PropertyInfo;

std::string extentsOf(const std::vector<std::u16string>& texts) {
  std::string all;
  for (const std::size_t extent : PropertyInfo::castSizeStringToIntegers(texts))
    all += (all.empty() ? "" : ",") + (extent + 1 == 0 ? "any" : std::to_string(extent));
  return all;
}

TEST(SizeStrings, OneEntry) {
  for (const auto& [text, expected] :
       std::vector<std::pair<std::u16string, std::string>>{{u"1", "1"},
                                                           {u"0", "0"},
                                                           {u"007", "7"},
                                                           {u":", "any"},
                                                           {u"n", "any"},
                                                           {u"Inf", "any"},
                                                           {u"NaN", "any"},
                                                           {u"e3", "any"},
                                                           {u"a_1Z", "any"},
                                                           {u"Z9", "any"},
                                                           {u" 12 ", "12"},
                                                           {u"\t\n12\v", "12"},
                                                           {u"\f\r3", "3"},
                                                           {u" : ", ""},
                                                           {u" n", ""},
                                                           {u"::", ""},
                                                           {u"_n", ""},
                                                           {u"n-1", ""},
                                                           {u"n m", ""},
                                                           {u"\u00e9", ""},
                                                           {u"n\u00e9", ""},
                                                           {u"", ""},
                                                           {u"  ", ""},
                                                           {u"1 2", ""},
                                                           {u"+1", ""},
                                                           {u"-1", ""},
                                                           {u"2.5", ""},
                                                           {u"1e3", ""},
                                                           {u"3n", ""},
                                                           {u"\u00a03", ""},
                                                           {u"\uff13", ""},
                                                           {u"\u0663", ""},
                                                           {{u'3', u'\0'}, ""},
                                                           {{u'\0', u'3'}, ""},
                                                           {{u'n', u'\0'}, ""},
                                                           {u"18446744073709551614", "18446744073709551614"},
                                                           {u"18446744073709551615", "any"},
                                                           {u"18446744073709551616", ""},
                                                           {u"99999999999999999999", ""}}) {
    EXPECT_EQ(extentsOf({text}), expected) << shown(text);
    EXPECT_EQ(extentsOf({u"2", text, u"n"}), expected.empty() ? "" : "2," + expected + ",any") << shown(text);
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
