#include <gtest/gtest.h>

#include "embedded/Host.h"
#include "tests/snapshot/Faults.h"
#include "tests/support/Table.h"

namespace {

using embedded::Description;
using embedded::readSnapshotText;

Description read(const std::string& content) {
  return readSnapshotText(R"({"format": 1, )" + content + "}", "world.json");
}

/// An access in one line: its level, and its classes.
std::string shown(const embedded::Access& access) {
  std::string text = std::to_string(access.level);
  for (const auto& name : access.classes) text += " " + name;
  return text;
}

TEST(GoodSnapshots, HaveAFormatAnywhereAndComments) {
  for (const auto& [text] :
       rowsOf<1>("tests/snapshot/tables.rows", "GoodSnapshots.HaveAFormatAnywhereAndComments"))
    EXPECT_EQ(faultOfText(text).what, "");
}

TEST(GoodSnapshots, AnEmptyOneHasTheDefaultsOfADescription) {
  const Description read = readSnapshotText(R"({"format": 1})", "");
  EXPECT_TRUE(read.components);
  EXPECT_TRUE(read.scopes.bridge);
  EXPECT_FALSE(read.scopes.queryable);
  EXPECT_FALSE(read.scopes.debugger);
  EXPECT_TRUE(read.classes.empty() && read.functions.empty() && read.workspace.empty());
}

TEST(GoodSnapshots, AccessIsAWordAListOrBoth) {
  for (const auto& [keys, get, set] :
       rowsOf<3>("tests/snapshot/tables.rows", "GoodSnapshots.AccessIsAWordAListOrBoth")) {
    const auto world =
        read(R"("classes": [{"name": "A"}, {"name": "B", "properties": [{"name": "p", )" + keys + "}]}]");
    const auto& property = world.classes[1].properties.at(0);
    EXPECT_EQ(shown(property.get), get) << keys;
    EXPECT_EQ(shown(property.set), set) << keys;
  }
}

TEST(GoodSnapshots, MaySayWhatIsSoAnyway) {
  for (const auto& [said, unsaid] :
       rowsOf<2>("tests/snapshot/tables.rows", "GoodSnapshots.MaySayWhatIsSoAnyway"))
    EXPECT_EQ(embedded::snapshotText(read(said)), embedded::snapshotText(read(unsaid)));
  const Description world = read(R"("path": [{"folder": "b"}], "currentFolder": "x/y")");
  EXPECT_EQ(world.path[0].folder + " " + world.currentFolder, "b x/y") << "a text has no folder of its own";
}

TEST(GoodSnapshots, NamesMayBeStrange) {
  const std::string longName(100000, 'x');
  for (const std::string name :
       {"margin-start", "2nd.3d", "if", "a b", "\\\"", "1", longName.c_str(), "a:b", "/~"}) {
    const auto world = read(R"("classes": [{"name": ")" + name + R"(", "properties": [")" + name + R"("]},
                               {"name": "Other", "superclasses": [")" +
                            name + "\"]}]");
    EXPECT_EQ(world.classes[0].name, name == "\\\"" ? "\"" : name);
    EXPECT_EQ(world.classes[0].properties[0].name, world.classes[1].superclasses[0]);
  }
}

// Three classes answer to one name; the identity goes before the alias, that before the dotted name.
TEST(GoodSnapshots, AnIdentityGoesBeforeAnAliasAndADottedName) {
  const std::string user = R"({"name": "B", "superclasses": ["A"]})";
  for (const auto& [classes, code] :
       rowsOf<2>("tests/snapshot/tables.rows", "GoodSnapshots.AnIdentityGoesBeforeAnAliasAndADottedName")) {
    EXPECT_EQ(faultOfText(R"({"format": 1, "classes": [)" + user + ", " + classes + "]}").code, code)
        << classes;
  }
}

}  // namespace
