// Sessions side by side, and what each knows beside its classes.

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <thread>

#include "embedded/Host.h"
#include "host/Classes.h"
#include "host/Components.h"
#include "host/Dispatcher.h"
#include "host/Interpreter.h"
#include "host/Text.h"
#include "tests/support/Table.h"
#include "tests/support/World.h"

namespace {

using embedded::Activation;
using embedded::Description;
using embedded::Host;
using kcos::internal::makeInterned;

Description withClass(const std::string& name) {
  Description description;
  description.classes.emplace_back().name = name;
  return description;
}

/// Which of the classes A and B the active host knows; "none" without one.
std::string known() {
  try {
    std::string result;
    for (const char* name : {"A", "B"})
      if (kcos::COSClass::getClass(makeInterned(name)) != nullptr) result += name;
    return result;
  } catch (const foundation::core::except::Exception& error) {
    EXPECT_EQ("KORVAL:host:NotActive", error.messageId());
    return "none";
  }
}

TEST(Activations, NestAndBelongToTheirThread) {
  Host a(withClass("A")), b(withClass("B"));
  EXPECT_EQ("none", known());
  {
    const Activation first(a);
    EXPECT_EQ("A", known());
    {
      const Activation second(b), again(a), third(b);
      EXPECT_EQ("B", known());
      std::thread([&] {
        EXPECT_EQ("none", known());
        const Activation there(a);
        EXPECT_EQ("A", known());
      }).join();
      EXPECT_EQ("B", known());
    }
    b.requestInterrupt();
    EXPECT_EQ("A", known()) << "an interrupt is its host's own";
  }
  EXPECT_EQ("none", known());
}

TEST(Members, AreNamedByTheValuesOfTheirClassOnly) {
  World world(
      R"({"format": 1, "classes": [{"name": "A", "members": ["Red"]}, {"name": "B", "members": ["Red"]}],
    "workspace": [{"name": "red", "value": {"object": "A", "member": "Red"}},
                  {"name": "bare", "value": {"object": "A"}}]})");
  const auto memberOf = [&](const char* name, const char* value) {
    return kcos::COSClass::getClass(makeInterned(name))
        ->getEnumerationMemberName(world.host.variable(value).get());
  };
  EXPECT_EQ("Red", memberOf("A", "red"));
  EXPECT_THROW(memberOf("A", "bare"), foundation::core::except::Exception);
  EXPECT_THROW(memberOf("B", "red"), foundation::core::except::Exception);
}

TEST(Folders, OfTheSearchPathAreVisitedByKind) {
  using embedded::PathItemDescription;
  Description description;
  description.path = {{PathItemDescription::Path, "/lab/"}, {PathItemDescription::Current, "/lab/../x/+pkg"}};
  description.currentFolder = "/x";
  description.builtins = {"sin", "sin"};
  Host host(description);
  const Activation active(host);
  struct : KpathItemVisitor {
    void visit(const KpathItem& item) override {
      found += std::to_string(item.getKind()) + fl::i18n::to_string(item.getLocation().getName()) + " ";
      parent = item.getLocation().getParent();
      EXPECT_TRUE(item.getService(KpathItem::NameComparer)->equal(u"a", u"a"));
      EXPECT_FALSE(item.getService(KpathItem::NameComparer)->equal(u"a", u"A"));
    }
    std::string found;
    foundation::storage::vfs::CanonicalAbsoluteIRI parent{u""};
  } visitor;
  const Kdispatcher& dispatcher = *Kdispatcher::getDispatcher();
  dispatcher.GetCurrentPath()->visitItems({1, 2}, visitor);
  EXPECT_EQ("", visitor.found);
  dispatcher.GetCurrentPath()->visitItems({0, 1, 2, 3}, visitor);
  EXPECT_EQ("0lab 3+pkg ", visitor.found);
  EXPECT_EQ(visitor.parent, dispatcher.GetCurrentWorkingFolder()->get().getLocation());
  EXPECT_EQ(u"/x", Tamsix::PathManagement::GetStringFromIRI(visitor.parent));
  const foundation::storage::vfs::CanonicalAbsoluteIRI root = visitor.parent.getParent();
  EXPECT_EQ(root, root.getParent());
  EXPECT_EQ(u"", root.getName());
  EXPECT_EQ(std::vector<std::u16string>({u"sin", u"sin"}), dispatcher.getDocumentedBuiltins());
}

TEST(Text, SubstitutesWhatAConversionCannotCarry) {
  using namespace fl::i18n;
  for (const auto& [text, general, ascii] : std::vector<std::tuple<std::u16string, std::string, std::string>>{
           {u"aä€", "aä€", "a??"},
           {u"\U0001F600", "\xf0\x9f\x98\x80", "?"},
           {{0xD800, u'a'}, "\uFFFDa", "?a"},
           {{u'a', 0xDC00, 0xD83D}, "a\uFFFD\uFFFD", "a??"}}) {
    EXPECT_EQ(general, to_string(text));
    EXPECT_EQ(ascii, to_string(text, codecvt_ustring_to_ascii()));
  }
  for (const auto& [text, general, ascii] :
       rowsOf<3>("tests/embedded/tables.rows", "Text.SubstitutesWhatAConversionCannotCarry")) {
    EXPECT_EQ(wide(general), to_ustring(text));
    EXPECT_EQ(wide(ascii), to_ustring(text, codecvt_ascii_to_ustring()));
  }
}

/// Texts of many parts, most of them ASCII, are their parts' conversions one after the other.
template <class From, class To>
void expectPartByPart(const std::vector<From>& parts, std::size_t ascii,
                      const std::function<To(const From&)>& convert) {
  std::mt19937 random(7);
  for (int round = 0; round < 3000; ++round) {
    From text;
    To expected;
    for (auto count = random() % 40; count > 0; --count) {
      const From& part = parts[random() % (random() % 16 == 0 ? parts.size() : ascii)];
      text += part;
      expected += convert(part);
    }
    ASSERT_EQ(convert(text), expected) << "round " << round;
  }
}

TEST(Text, OfAnyLengthIsConvertedPartByPart) {
  using namespace fl::i18n;
  const std::vector<std::string> narrow{"a", "Z", "\x7f", {'\0'}, "\x80", "\xff", "ä", "\xc3Z", "€", "😀"};
  expectPartByPart<std::string, std::u16string>(narrow, 4, [](const auto& text) { return to_ustring(text); });
  expectPartByPart<std::string, std::u16string>(
      narrow, 4, [](const auto& text) { return to_ustring(text, codecvt_ascii_to_ustring()); });
  const std::vector<std::u16string> wide{u"a",      u"Z",      u"\x7f", {u'\0'},  u"\x80",        u"ä",
                                         u"\u0141", u"\uFF00", u"😀",    {0xDC00}, {0xD800, u'a'}, u"\uFFFD"};
  expectPartByPart<std::u16string, std::string>(wide, 4, [](const auto& text) { return to_string(text); });
  expectPartByPart<std::u16string, std::string>(
      wide, 4, [](const auto& text) { return to_string(text, codecvt_ustring_to_ascii()); });
}

}  // namespace
