#include "contextdata/MemberNames.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/support/Table.h"
#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace {

using namespace KCOSContextData;
using Names = std::vector<std::u16string>;

struct List {
  bool (*byIdentifier)(const ResolvedClassID&, Names&, bool&);
  bool (*byName)(const std::u16string&, Names&, bool&);
};

const std::map<std::string, List> lists{
    {"constants", {getClassConstantPropertyNames, getClassConstantPropertyNames}},
    {"properties", {getClassPropertyNames, getClassPropertyNames}},
    {"static", {getClassStaticMethodNames, getClassStaticMethodNames}},
    {"non-static", {getClassNonStaticMethodNames, getClassNonStaticMethodNames}},
    {"methods", {getClassMethodNames, getClassMethodNames}},
    {"members", {getClassEnumerationNames, getClassEnumerationNames}}};

constexpr const char* missingName = "logic error: basic_string: construction from null is not valid";

/// Asks one form from either value of the flag, with a list that holds a name already.
void expectList(const std::function<bool(Names&, bool&)>& ask, std::string expected, const std::string& flag,
                bool throws) {
  const bool fails = expected.ends_with('!');
  if (fails) expected.pop_back();
  for (const bool before : {false, true}) {
    Names names{u"kept"};
    bool classFlag = before, answer = false;
    EXPECT_EQ(thrownBy([&] { answer = ask(names, classFlag); }), fails && throws ? missingName : "");
    EXPECT_EQ(shownList(names), expected.empty() ? "kept" : "kept " + expected);
    EXPECT_EQ(answer, !fails && !expected.empty());
    EXPECT_EQ(classFlag, flag.empty() ? before : flag == "set");
  }
}

TEST(MemberNames, OfEveryKindOfClass) {
  World world(worldFile("tests/names/members.json"));
  for (const auto& row : rowsOf<6>("tests/names/tables.rows", "MemberNames.OfEveryKindOfClass")) {
    SCOPED_TRACE(row[0] + ", " + row[1]);
    const List& list = lists.at(row[1]);
    const auto id = ResolvedClassID::fromKnownResolvedClassID(row[0]);
    expectList([&](Names& names, bool& flag) { return list.byIdentifier(id, names, flag); }, row[2], row[4],
               true);
    expectList([&](Names& names, bool& flag) { return list.byName(wide(row[0]), names, flag); }, row[3],
               row[5], false);
  }
}

TEST(MemberNames, AppendAtEachCall) {
  World world(worldFile("tests/names/members.json"));
  for (const auto& [kind, list] : lists) {
    Names names;
    bool flag = false;
    const std::u16string name = kind == "members" ? u"lab.Mode" : u"lab.Pump";
    EXPECT_TRUE(list.byName(name, names, flag)) << kind;
    const std::string once = shownList(names);
    EXPECT_TRUE(list.byName(name, names, flag)) << kind;
    EXPECT_EQ(shownList(names), once + " " + once);
  }
}

}  // namespace
