// Names and text, which also work before main() and without an active host.

#include <gtest/gtest.h>

#include <algorithm>

#include "host/Names.h"
#include "host/Text.h"
#include "tests/host/Rows.h"

namespace {

using fl::i18n::to_string;
using fl::i18n::to_ustring;
using kcos::internal::makeInterned;

const kcos::COSInternedName nullBeforeMain;
const kcos::COSInternedName nameBeforeMain = makeInterned("before main");
const std::u16string textBeforeMain = to_ustring(to_string(u"\u00e4"));

TEST(Names, AreOneHandlePerTextFromBeforeMainOn) {
  ASSERT_TRUE(world::runs());
  static_assert(sizeof(kcos::COSInternedName) == sizeof(void*));
  EXPECT_EQ(nameBeforeMain, makeInterned("before main"));
  EXPECT_EQ(u"\u00e4", textBeforeMain);
  for (const std::string& text : {std::string("a"), std::string("\0", 1), std::string("a\0b", 3),
                                  std::string("\xff"), std::string(100000, 'x')}) {
    const kcos::COSInternedName name = makeInterned(text);
    EXPECT_EQ(text, name.text());
    EXPECT_EQ(&name.text(), &makeInterned(std::string(text)).text());
    EXPECT_NE(name, makeInterned(text + "x"));
    EXPECT_LT(name, makeInterned(text + "x"));
    EXPECT_FALSE(name.isNull());
  }
}

TEST(Names, TheNullNameIsTheSharedEmptyText) {
  ASSERT_TRUE(world::runs());
  EXPECT_TRUE(nullBeforeMain.isNull());
  EXPECT_EQ("", nullBeforeMain.text());
  EXPECT_EQ(&kcos::internal::nullValue, &nullBeforeMain.text());
  EXPECT_LT(kcos::COSInternedName(), makeInterned("a"));
}

TEST(Text, GeneralConversionsCarryEveryTextAndAsciiOnesSubstituteTheRest) {
  const auto isAscii = [](const auto& text) {
    return std::ranges::all_of(text, [](auto unit) { return static_cast<char16_t>(unit) < 0x80; });
  };
  using namespace std::string_literals;
  for (const std::u16string& text :
       {u""s, u"lab.Pump"s, u"a\0b"s, u"\u00e4\u20ac"s, u"\u00e4"s, u"a\U0001F600!"s, u"\uFFFD"s}) {
    ASSERT_TRUE(world::runs());
    const std::string general = to_string(text);
    EXPECT_EQ(general, to_string(text, fl::i18n::codecvt_ustring_to_string()));
    EXPECT_EQ(text, to_ustring(general));
    const std::string ascii = to_string(text, fl::i18n::codecvt_ustring_to_ascii());
    EXPECT_TRUE(isAscii(ascii)) << general;
    EXPECT_EQ(isAscii(text), ascii == general) << general;
    EXPECT_EQ(isAscii(text), to_ustring(general, fl::i18n::codecvt_ascii_to_ustring()) == text) << general;
  }
}

TEST(Text, NoInputMakesAConversionThrow) {
  const char16_t lone[] = {0xD800, u'a', 0xDC00, 0xDC00, 0xD800, 0};
  const std::string bytes[] = {"\x80",         "a\xc3",    "\xc3\x28", "\xf0\x9f\x98",
                               "\xed\xa0\x80", "\xc0\xaf", "\xff\xfe"};
  for (const std::string& text : bytes) {
    ASSERT_TRUE(world::runs());
    EXPECT_FALSE(to_ustring(text).empty());
    EXPECT_FALSE(to_ustring(text, fl::i18n::codecvt_ascii_to_ustring()).empty());
  }
  for (std::u16string rest = lone; !rest.empty(); rest.erase(0, 1)) {
    ASSERT_TRUE(world::runs());
    EXPECT_NE(rest, to_ustring(to_string(rest))) << "a lone surrogate is no text";
    EXPECT_FALSE(to_string(rest, fl::i18n::codecvt_ustring_to_ascii()).empty());
  }
}

}  // namespace
