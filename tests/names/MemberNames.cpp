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

constexpr const char* snapshot = R"json({"format": 1,
  "classes": [
    {"name": "lab.Device", "component": "plant", "properties": ["Serial"], "methods": ["reset"]},
    {"name": "lab.Pump", "component": "plant", "superclasses": ["lab.Device"], "flag": true,
     "properties": ["Flow", "Serial", {"name": "Limit", "constant": true}],
     "methods": ["Pump", "start", "reset", {"name": "make", "static": true}]},
    {"name": "lab.Mode", "enumeration": true, "flag": true,
     "members": ["Idle", {"name": "Test", "hidden": true}, "Busy", "Idle"]},
    {"name": "lab.Empty"},
    {"name": "lab.Veiled", "flag": true, "properties": [{"name": "Cache", "hidden": true}],
     "methods": [{"name": "debug", "hidden": true}]},
    {"name": "lab.Broken", "broken": true, "flag": true, "enumeration": true, "members": ["Idle"],
     "properties": ["Flow", {"name": "Limit", "constant": true}], "methods": ["start"]},
    {"name": "lab.Düse", "properties": ["Fluß"], "methods": ["stör"]},
    {"name": "lab.Nameless", "flag": true,
     "properties": ["First", {"name": null, "hidden": true}, {"name": null, "access": "private"},
                    "Second", {"name": null}, "Last"],
     "methods": ["first", {"name": null, "hidden": true}, "last"]},
    {"name": "lab.NamelessMode", "enumeration": true,
     "members": ["First", {"name": null, "hidden": true}, "Second", {"name": null}, "Last"]}]})json";

// The list; what is appended in either form, which is the answer too, and "!" when the exception of a missing name ends
// it; and what becomes of the flag: set, cleared, or untouched.
constexpr const char* rows = R"(
  lab.Pump         | constants  | Limit                    | Limit                    | set     | set
  lab.Pump         | properties | Flow Serial Limit Serial | Flow Serial Limit Serial | set     | set
  lab.Pump         | static     | make                     | make                     |         |
  lab.Pump         | non-static | start reset              | start reset              |         |
  lab.Pump         | methods    | start reset make         | start reset make         |         |
  lab.Pump         | members    |                          |                          |         |
  lab.Mode         | members    | Idle Busy Idle           | Idle Busy Idle           |         |
  lab.Mode         | properties |                          |                          | set     | set
  lab.Empty        | properties |                          |                          | cleared | cleared
  lab.Veiled       | properties |                          |                          | set     | set
  lab.Broken       | constants  | Limit                    |                          | set     |
  lab.Broken       | properties | Flow Limit               |                          | set     |
  lab.Broken       | methods    |                          |                          |         |
  lab.Broken       | members    | Idle                     |                          |         |
  lab.Düse         | properties | Flu<fffd><fffd>          |                          | cleared |
  lab.Düse         | methods    | st<fffd><fffd>r          |                          |         |
  lab.Nameless     | constants  |                          |                          | set     | set
  lab.Nameless     | properties | First Second!            | First Second!            | set     | set
  lab.Nameless     | static     | !                        | !                        |         |
  lab.Nameless     | non-static | first!                   | first!                   |         |
  lab.Nameless     | methods    | first!                   | first!                   |         |
  lab.NamelessMode | members    | First Second!            | First Second!            |         |
  nope             | properties |                          |                          |         |
  nope             | methods    |                          |                          |         |
  nope             | members    |                          |                          |         |
                   | constants  |                          |                          |         |
                   | non-static |                          |                          |         |)";

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
  World world(snapshot);
  for (const auto& row : tableOf<6>(rows)) {
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
  World world(snapshot);
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
