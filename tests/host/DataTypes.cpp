#include "host/DataTypes.h"

#include "host/Arrays.h"
#include "host/Text.h"
#include "tests/host/Rows.h"

namespace {

using world::Capability;
using world::classNamed;
using world::InLab;
using world::named;
using world::runs;
using Value = boost::intrusive_ptr<kxArray_tag>;

kcos::COSDataTypePtr typeOf(const std::string& className, const std::string& property) {
  return kcos::cosiToProp(classNamed(className).findProperty(named(property)).get())->getDataType();
}

std::string about(const kcos::COSValidationType& validation) {
  std::string text = validation.getClassName() + ":";
  for (auto dimensions = validation.getDimensions(); dimensions.hasMoreElements();) {
    const auto dimension = dimensions.nextElement();
    const auto* extent = std::get_if<std::uint64_t>(&dimension);
    text += " " + (extent != nullptr ? std::to_string(*extent)
                                     : fl::i18n::to_string(std::u16string(1, std::get<char16_t>(dimension))));
  }
  for (auto functions = validation.getFunctions(); functions.hasMoreElements();)
    text += " " + functions.nextElement().name;
  return text;
}

TEST_F(InLab, ValidationsAnswerWhatThePlanSays) {
  EXPECT_EQ(nullptr, kcos::COSValidationType::get({}));
  if (!runs(Capability::Validations)) return;
  for (int pass = 0; pass < 2; ++pass)
    EXPECT_EQ("double: 1 : 0 f g", about(*kcos::COSValidationType::get(typeOf("Sized", "both"))));
  EXPECT_EQ(":", about(*kcos::COSValidationType::get(typeOf("Sized", "none"))));
  EXPECT_EQ(nullptr, kcos::COSValidationType::get(typeOf("Sized", "plain")));
  for (const char* name : {"both", "none", "plain"}) {
    EXPECT_EQ(named("t"), typeOf("Sized", name).getID());
    EXPECT_FALSE(typeOf("Sized", name)->isPossibleValuesFinite());
    EXPECT_TRUE(typeOf("Sized", name)->getPossibleValues().isEmpty());
  }
}

/// What the array that a possible value becomes says of itself.
std::string about(const Value& value) {
  const int code = kxGetClassID(value.get());
  const std::size_t count = kxGetNumberOfElements(value.get());
  if (code == 6) return "number " + std::to_string(*kxGetDoubles(value.get())).substr(0, 3);
  if (code == 4)
    return "text '" + (count == 0 ? "" : fl::i18n::to_string({kxGetCharacters(value.get()), count})) + "'";
  if (code != 17) return "something else";
  const Value object(omGetArrayElement(value.get(), 0), false);
  EXPECT_ANY_THROW(omGetArrayElement(value.get(), count));
  EXPECT_TRUE(omIsKCOS(object.get()));
  const kcos::COSClass& its = *kcos::COSClass::getClass(omGetCOSClassID(object.get()));
  if (its.isEnumeration()) return "member " + its.getEnumerationMemberName(object.get());
  try {
    const auto text = omGetStringConversion(object.get());
    return text ? "object '" + fl::i18n::to_string(*text) + "'" : "object";
  } catch (const foundation::core::except::Exception&) {
    return "failing object";
  }
}

TEST_F(InLab, FiniteSetsConvertToNewValues) {
  if (!runs(Capability::FiniteValues)) return;
  const std::int64_t before = world::testedHost().liveValues();
  const kcos::COSDataTypePtr type = typeOf("Finite", "mixed");
  const auto* conversion = kcos::COSTypeRepository::getConversion(named("any"), type.getID());
  ASSERT_NE(nullptr, conversion);
  for (int pass = 0; pass < 2; ++pass) {
    ASSERT_TRUE(type->isPossibleValuesFinite());
    std::string all;
    for (auto values = type->getPossibleValues(); values.hasMoreElements();) {
      const kcos::COSPossibleValue* value = values.nextElement();
      const Value first(conversion->convert(value), false), second(conversion->convert(value), false);
      EXPECT_NE(first, second);
      all += about(first) + "; ";
    }
    EXPECT_EQ("number 2.5; text 'text'; text ''; member Red; object 'shown'; object; failing object; ", all);
  }
  if (runs(Capability::CountsValues)) {
    EXPECT_EQ(before, world::testedHost().liveValues());
  }
  EXPECT_TRUE(typeOf("Finite", "empty")->isPossibleValuesFinite());
  EXPECT_FALSE(typeOf("Finite", "empty")->getPossibleValues().hasMoreElements());
  EXPECT_EQ(nullptr, kcos::COSTypeRepository::getConversion(named("any"), named("closed")));
  EXPECT_EQ(nullptr, kcos::COSTypeRepository::getConversion(named("any"), named("no type")));
  EXPECT_EQ(nullptr, kcos::COSTypeRepository::getConversion(named("double"), type.getID()));
}

TEST(Text, TrimmingAndCharactersAreAscii) {
  ASSERT_TRUE(runs());
  using namespace fl::i18n;
  EXPECT_EQ(u"b a b", trim(u"aab a bca", u"ac"));
  EXPECT_EQ(u"", trim(u"aaa", u"a"));
  EXPECT_EQ(u"", trim(u"", u"a"));
  EXPECT_EQ(u"\u00a0x\u00a0", trim(u" \u00a0x\u00a0 ", u" "));
  for (int unit = 0; unit < 0x10000; ++unit) {
    const auto text = static_cast<char16_t>(unit);
    EXPECT_EQ(is_ascii_letter(text), unit < 128 && std::isalpha(unit) != 0) << unit;
    EXPECT_EQ(is_ascii_digit(text), unit < 128 && std::isdigit(unit) != 0) << unit;
  }
}

}  // namespace
