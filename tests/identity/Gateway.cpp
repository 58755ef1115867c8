#include <contextdata/KCOSIntrospection.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/Table.h"
#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace {

using KCOSContextData::ResolvedClassID;
using namespace KCOSIntrospection;

struct Gateway : testing::Test {
  /// Null for a name that no variable has.
  const kxArray_tag* value(const std::string& name) const { return world.host.variable(name).get(); }
  static ResolvedClassID id(const std::string& name) {
    return ResolvedClassID::fromKnownResolvedClassID(name);
  }

  World world{worldFile("tests/identity/gateway.json")};
};

TEST_F(Gateway, FindsClasses) {
  for (const auto& row : rowsOf<3>("tests/identity/tables.rows", "Gateway.FindsClasses")) {
    EXPECT_EQ(shown(isKCOSClass(id(row[0]))), row[1]) << row[0];
    EXPECT_EQ(shown(getCOSClass(id(row[0])) != nullptr), row[1]) << row[0];
    EXPECT_EQ(shown(isKCOSClass(wide(row[0]))), row[2]) << row[0];
    EXPECT_EQ(getCOSClass(wide(row[0])), row[2] == "true" ? getCOSClass(id(row[0])) : nullptr) << row[0];
  }
  for (const std::string object : {"pump", "broken", "one", "none"}) {
    const bool isPump = object == "pump";
    EXPECT_EQ(isKCOSObject(value(object)), isPump) << object;
    EXPECT_EQ(getCOSClass(value(object)), isPump ? getCOSClass(id("lab.Pump")) : nullptr) << object;
  }
}

// "no" leaves the flag as it was, whatever it was.
TEST_F(Gateway, FindsMethods) {
  for (const auto& row : rowsOf<4>("tests/identity/tables.rows", "Gateway.FindsMethods")) {
    const bool expected = row[3] != "no";
    EXPECT_EQ(hasMethod(value(row[0]), row[2]), expected) << row[0] << " " << row[2];
    for (const bool before : {false, true}) {
      bool ofIdentifier = before, ofName = before;
      EXPECT_EQ(hasMethod(id(row[1]), row[2], ofIdentifier), expected) << row[1] << " " << row[2];
      EXPECT_EQ(hasMethod(wide(row[1]), row[2], ofName), expected) << row[1] << " " << row[2];
      EXPECT_EQ(ofIdentifier, expected ? row[3] == "static" : before) << row[2];
      EXPECT_EQ(ofName, expected ? row[3] == "static" : before) << row[2];
    }
  }
  bool isStatic = true;
  world.host.startLog();
  EXPECT_FALSE(hasMethod(u"lab.Düse", "start", isStatic));
  const auto asked = world.host.takeLog();
  EXPECT_TRUE(std::ranges::any_of(asked, [](const auto& call) { return call.arguments == "\"lab.Düse\""; }))
      << "the general conversion";
}

TEST_F(Gateway, FindsPropertiesAndNamespaces) {
  for (const auto& row : rowsOf<3>("tests/identity/tables.rows", "Gateway.FindsPropertiesAndNamespaces"))
    EXPECT_EQ(shown(hasProperty(value(row[0]), row[1])), row[2]) << row[0] << " " << row[1];
  for (const auto& row : rowsOf<2>("tests/identity/tables.rows", "Gateway.FindsNamespaces")) {
    EXPECT_EQ(shown(isKCOSNamespace(wide(row[0]))), row[1]) << row[0];
    EXPECT_EQ(shown(getNamespaceInterface(wide(row[0])) != nullptr), row[1]) << row[0];
  }
  EXPECT_NE(getNamespaceInterface(u"lab"), getNamespaceInterface(u"lab.spare"));
}

TEST_F(Gateway, TestsDerivationAndNames) {
  for (const auto& row : rowsOf<4>("tests/identity/tables.rows", "Gateway.TestsDerivationAndNames")) {
    EXPECT_EQ(shown(isKCOSClassDerivedFrom(id(row[0]), id(row[1]))), row[2]) << row[0] << " " << row[1];
    EXPECT_EQ(shown(isKCOSClassDerivedFrom(wide(row[0]), wide(row[1]))), row[3]) << row[0] << " " << row[1];
  }
  EXPECT_EQ(shown(getClassName(value("pump"))) + " " + shown(getClassName(value("one"))), "lab.Pump double");
  for (const auto& row : rowsOf<2>("tests/identity/tables.rows", "Gateway.ConstructorNames"))
    EXPECT_EQ(shown(getConstructorName(wide(row[0]))), row[1]) << row[0];
}

// Which calls a question makes is part of what it promises to a host.
TEST_F(Gateway, AsksAsOftenAsItSays) {
  bool isStatic = false;
  const ResolvedClassID pump = id("plant:lab.Pump"), device = id("plant:lab.Device");
  const std::u16string name = u"lab.Pump";
  const kxArray_tag *object = value("pump"), *broken = value("broken");
  const std::string ofValue = "omGetCOSClassID makeInterned getClass checkClass";
  const std::string ofName = "to_string makeInterned getClass checkClass",
                    found = " makeInterned findMethods hasMoreElements";
  const std::string first = found + " findMethods nextElement cosiToMethod isStatic";
  const std::pair<std::string, std::function<void()>> rows[] = {
      {"getClass", [&] { getCOSClass(pump); }},
      {ofName, [&] { getCOSClass(name); }},
      {ofValue, [&] { getCOSClass(object); }},
      {ofValue + " checkClass" + found, [&] { hasMethod(object, "start"); }},
      {ofValue, [&] { hasMethod(broken, "start"); }},
      {ofValue + " checkClass makeInterned findProperty", [&] { hasProperty(object, "Flow"); }},
      {"getClass checkClass" + first, [&] { hasMethod(pump, "start", isStatic); }},
      {"getClass checkClass" + found, [&] { hasMethod(pump, "nope", isStatic); }},
      {ofName + " getID getClass checkClass" + first, [&] { hasMethod(name, "start", isStatic); }},
      {"getClass makeInterned isDerivedFrom", [&] { isKCOSClassDerivedFrom(pump, device); }},
      {ofName + " to_string makeInterned isDerivedFrom", [&] { isKCOSClassDerivedFrom(name, name); }},
      {"to_string(codecvt_ustring_to_ascii) getNamespaceInterface", [&] { getNamespaceInterface(u""); }},
      {"", [&] { getConstructorName(name); }}};
  for (const auto& [questions, ask] : rows) EXPECT_EQ(world.asked(ask), questions);
}

}  // namespace
