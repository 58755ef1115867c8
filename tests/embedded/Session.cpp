// Sessions side by side, and what each knows beside its classes.

#include <gtest/gtest.h>

#include <thread>

#include "embedded/Host.h"
#include "host/Classes.h"
#include "host/Components.h"
#include "host/Dispatcher.h"
#include "host/Interpreter.h"
#include "host/Text.h"

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

TEST(Values, OfEveryKindSurviveTheirHost) {
  const std::int64_t before = Host::references().values;
  std::vector<boost::intrusive_ptr<kxArray_tag>> values;
  {
    Host host(embedded::readSnapshotText(R"({"format": 1, "classes": [{"name": "A", "component": "acme"}],
      "workspace": [{"name": "d", "value": {"double": [1, 2, 3, 4, 5, 6], "size": [2, 3]}},
                    {"name": "l", "value": {"logical": [true, false]}}, {"name": "c", "value": "aä"},
                    {"name": "e", "value": ""}, {"name": "s", "value": {"string": null}},
                    {"name": "k", "value": {"cell": [1, null]}}, {"name": "o", "value": {"object": "A"}},
                    {"name": "t", "value": {"structs": [{"x": 1, "y": 1}, {"x": 1, "y": 1}]}}]})",
                                         ""));
    for (const std::string& name : host.variableNames()) values.push_back(host.variable(name));
    EXPECT_EQ(nullptr, host.variable("none"));
  }
  Host other((Description()));
  const Activation active(other);
  std::string all;
  for (const auto& value : values)
    all += std::to_string(kxGetClassID(value.get())) + " " + kxGetClassName(value.get()) + " " +
           std::to_string(kxGetNumberOfElements(value.get())) + omGetCOSClassID(value.get()).text() + "; ";
  EXPECT_EQ("6 double 6; 3 logical 2; 4 char 2; 4 char 0; 16 string 1; 1 cell 2; 19 A 1acme:A; 2 struct 2; ",
            all);
  EXPECT_EQ(before + 13, Host::references().values) << "with the elements of cells and structures";
  values.clear();
  EXPECT_EQ(before, Host::references().values);
}

TEST(Scopes, AreThoseOfTheDescription) {
  Description description;
  description.functions = {{.name = "a"}, {.name = "lab/b.k"}};
  description.scopes = {.queryable = true,
                        .executing = "a",
                        .active = {{"lab/b.k", false}, {"a", true}},
                        .bridge = true,
                        .debugger = embedded::DebuggerDescription{"\u00e4", 3, 4}};
  Host host(description);
  const Activation active(host);
  const Kdispatcher& dispatcher = *Kdispatcher::getDispatcher();
  EXPECT_TRUE(dispatcher.hasQueryableExecutionStack());
  EXPECT_EQ(host.function("a"), dispatcher.GetCurrentlyExecutingFunctionScopeOnQueryableExecutionStack());
  const KactiveScope* inner = dispatcher.getActiveScopes();
  EXPECT_EQ(dispatcher.findFunction(u"lab/b.k"), inner->getFunction());
  EXPECT_TRUE(!inner->isEligible() && inner->getNext()->isEligible());
  EXPECT_EQ(nullptr, inner->getNext()->getNext());
  std::int32_t first = 0, second = 0;
  ASSERT_TRUE(IInterpreter::GetInterpreterBridge()->hasDebuggerFocus());
  EXPECT_EQ(u"\u00e4", IInterpreter::GetInterpreterBridge()->getDebuggerFocus(first, second));
  EXPECT_EQ(std::pair(3, 4), std::pair(first, second));

  Description quiet;
  quiet.scopes.bridge = false;
  Host without(quiet);
  const Activation other(without);
  EXPECT_EQ(nullptr, IInterpreter::GetInterpreterBridge());
  EXPECT_EQ(nullptr, Kdispatcher::getDispatcher()->getActiveScopes());
  EXPECT_EQ(nullptr, Kdispatcher::getDispatcher()->findFunction(u"a"));
  for (const bool on : {false, true}) {
    without.setComponents(on);
    EXPECT_EQ(on, Tamsix::KorvalComponents::ComponentFeature::IsOn());
  }
}

TEST(Members, CarryAttributesAndEnumerationValues) {
  Description description = withClass("A");
  auto& properties = description.classes[0].properties;
  properties.push_back({.name = "p", .attributes = {{"On", "Yes", true}, {"Off", "", false}}});
  description.classes[0].attributeNames[2] = {{"always"}, {"asked"}};
  description.classes[0].members.push_back({"Red", false});
  description.workspace = {{"red", {embedded::ObjectValue{"A", {}, "Red"}}},
                           {"bare", {embedded::ObjectValue{"A", {}, ""}}}};
  Host host(description);
  const Activation active(host);
  const kcos::COSClass& a = *kcos::COSClass::getClass(makeInterned("A"));
  const kcos::COSInterfacePtr p = a.findProperty(makeInterned("p"));
  for (const auto& [name, type, value] : {std::tuple("On", "Yes", true), std::tuple("Off", "", false)}) {
    const kcos::COSAttribute* attribute = p->findAttribute(makeInterned(name));
    ASSERT_NE(nullptr, attribute);
    EXPECT_EQ(type, attribute->getDataType() ? attribute->getDataType().getID().text() : "");
    EXPECT_EQ(value, p->getAttributeValue(makeInterned(name), COSGetPublicClient()));
  }
  EXPECT_EQ(nullptr, p->findAttribute(makeInterned("on")));
  EXPECT_EQ(std::vector<std::string>({"always"}), a.getAttributeNames3(false));
  EXPECT_EQ(std::vector<std::string>({"always", "asked"}), a.getAttributeNames3(true));
  EXPECT_TRUE(a.getAttributeNames2(true).empty());
  EXPECT_EQ("Red", a.getEnumerationMemberName(host.variable("red").get()));
  EXPECT_THROW(a.getEnumerationMemberName(host.variable("bare").get()), foundation::core::except::Exception);
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
  struct {
    std::u16string text;
    const char *general, *ascii;
  } const toNarrow[] = {{u"a\u00e4\u20ac", "a\xc3\xa4\xe2\x82\xac", "a??"},
                        {u"\U0001F600", "\xf0\x9f\x98\x80", "?"},
                        {{0xD800, u'a'},
                         "\xef\xbf\xbd"
                         "a",
                         "?a"},
                        {{u'a', 0xDC00, 0xD83D}, "a\xef\xbf\xbd\xef\xbf\xbd", "a??"}};
  for (const auto& row : toNarrow) {
    EXPECT_EQ(row.general, to_string(row.text));
    EXPECT_EQ(row.ascii, to_string(row.text, codecvt_ustring_to_ascii()));
  }
  struct {
    const char* text;
    const char16_t *general, *ascii;
  } const toUtf16[] = {{"a\xc3\xa4", u"a\u00e4", u"a\uFFFD\uFFFD"},
                       {"\xf0\x9f\x98\x80", u"\U0001F600", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
                       {"\xff"
                        "a",
                        u"\uFFFDa", u"\uFFFDa"},
                       {"a\xc3", u"a\uFFFD", u"a\uFFFD"}};
  for (const auto& row : toUtf16) {
    EXPECT_EQ(row.general, to_ustring(row.text));
    EXPECT_EQ(row.ascii, to_ustring(row.text, codecvt_ascii_to_ustring()));
  }
}

}  // namespace
