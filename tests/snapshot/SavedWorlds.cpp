// Everything but values: each key, as it is written.

#include <gtest/gtest.h>

#include <climits>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/snapshot/Saved.h"
#include "tests/support/World.h"

namespace {

using Json = nlohmann::ordered_json;

/// Every key that is read, with something else than its default, in the order of the writer.
Json everything() { return Json::parse(std::ifstream(sourceFile("tests/snapshot/everything.json"))); }

TEST(SavedWorlds, KeepEveryKey) {
  const std::string text = saved(worldFile("tests/snapshot/everything.json"));
  EXPECT_EQ(text, everything().dump(2) + "\n");
  EXPECT_EQ(saved(embedded::readSnapshotText(text, "saved")), text);
}

/// The same, written in code.
embedded::Description everyField() {
  using Argument = embedded::ArgumentDescription;
  using Item = embedded::PathItemDescription;
  const embedded::ValueDescription one{embedded::DoubleArray{{}, {1}}};
  embedded::Description world;
  world.components = false;
  world.namespaces = {"idle.space"};
  world.classes = {{.name = "lab.Pump",
                    .component = "core",
                    .aliases = {"old.Pump"},
                    .superclasses = {"B"},
                    .order = embedded::WalkOrder::InheritedFirst,
                    .hidden = true,
                    .flag = true},
                   {.name = "B", .broken = true, .flag = true},
                   {.name = "C", .enumeration = true}};
  embedded::ClassDescription& pump = world.classes[0];
  pump.properties = {
      {.name = "plain"},
      {.name = {}},
      {.name = "a", .get = {2}, .set = {2}},
      {.name = "b", .get = {4, {"B"}}, .set = {4, {"B"}}},
      {.name = "c", .get = {2, {"B"}}, .set = {2, {"B"}}},
      {.name = "d", .get = {1}},
      {.name = "e", .set = {3}},
      {.name = "f", .get = {4}, .set = {2}},
      {.name = "g", .set = {5}},
      {.name = "h", .get = {2}, .set = {5}},
      {.name = "i", .get = {5}, .set = {5}},
      {.name = "j", .get = {4, {"B"}}, .set = {5, {"B"}}},
      {.name = "k", .hidden = true, .type = "t", .conversion = false},
      {.name = "l", .dependent = true, .validation = {{}}, .values = {{}}, .optimized = {{false, true}}}};
  embedded::PropertyDescription& full = pump.properties[12];
  full.validation = {"double", {1, {}, 0}, {"f", "g"}};
  full.values = {one, {embedded::CharacterRow{u"a"}}};
  full.attributes = {{"x", "y", true}, {"z"}};
  full.optimized = {true, false};
  full.value = {embedded::DoubleArray{{}, {1, 2}}};
  full.getter = "1";
  pump.methods = {{.name = "m"},
                  {.name = "m"},
                  {.name = "n", .access = {1}, .isStatic = true, .visible = true, .code = "1"},
                  {.name = {}, .hidden = true, .visible = false}};
  pump.members = {{"Idle"}, {"Idle"}, {"Test", true}, {}};
  pump.attributeNames = {{{{"p", "r"}, {}}, {{}, {"q"}}, {}, {{""}, {}}}};
  pump.precedence = {"B", "far.Kind", "double"};
  world.functions = {{.name = "lab.tune",
                      .component = "core",
                      .imports = {"lab.*"},
                      .hidden = true,
                      .visible = true,
                      .arguments = {{.inputs = {{"x", Argument::Optional, "double", {{}, 2}, {"v"}, {"w"}},
                                                {"y", Argument::Repeating},
                                                {"z", Argument::NameValue}},
                                     .outputs = {{"x"}},
                                     .furtherInputs = true}},
                      .code = "1"},
                     {.name = "main", .arguments = {{.furtherOutputs = true}}}};
  world.packages = {{"old", {"A"}, {"f"}}};
  world.foreignClasses = {{"far.Kind", {"Fast"}}};
  world.workspace = {{"v", one}};
  world.scopes = {true, "main", {{"main", false}, {"main"}}, false, {{"here", INT_MIN, INT_MAX}}};
  world.path = {{Item::Path, "/a"}, {Item::Class, "/b"}, {Item::Package, "/c"}, {Item::Current, "/d"}};
  world.currentFolder = "/here";
  world.builtins = {"sum", "sum"};
  return world;
}

TEST(SavedWorlds, EveryFieldHasItsKey) {
  EXPECT_EQ(embedded::snapshotText(everyField()), everything().dump(2) + "\n");
}

void collectKeys(const Json& node, std::set<std::string>& keys) {
  for (const auto& [key, inner] : node.items()) {
    if (node.is_object()) keys.insert(key);
    if (inner.is_structured()) collectKeys(inner, keys);
  }
}

void collectKnownKeys(const Json& schema, std::set<std::string>& keys) {
  if (schema.is_object() && schema.contains("additionalProperties") && schema.contains("properties"))
    for (const auto& property : schema["properties"].items()) keys.insert(property.key());
  for (const auto& inner : schema)
    if (inner.is_structured()) collectKnownKeys(inner, keys);
}

// So that this world grows with the format. Keys of values have tests of their own.
TEST(SavedWorlds, EveryKeyIsAllThatTheSchemaKnows) {
  std::ifstream file(sourceFile("share/contextdata/snapshot.schema.json"));
  Json schema = Json::parse(file);
  schema["$defs"].erase("value");
  std::set<std::string> known, written;
  collectKnownKeys(schema, known);
  collectKeys(everything(), written);
  known.erase("$schema");
  EXPECT_GT(known.size(), 60U);
  EXPECT_EQ(written, known);
}

TEST(SavedWorlds, ThatAreEmptyNameTheirFolder) {
  embedded::Description empty;
  EXPECT_EQ(embedded::snapshotText(empty), "{\n  \"format\": 1\n}\n");
  empty.currentFolder = "/a/./b/..";
  EXPECT_EQ(saved(empty), "{\n  \"format\": 1,\n  \"currentFolder\": \"/a/\"\n}\n");
}

TEST(SavedWorlds, HaveTheComponentsAsTheyAreNow) {
  World live(embedded::Description{});
  EXPECT_TRUE(live.host.describe().components);
  live.host.setComponents(false);
  EXPECT_FALSE(live.host.describe().components);
}

TEST(SavedWorlds, RefuseWhatHostRefuses) {
  embedded::Description world;
  world.classes = {{.name = "A", .superclasses = {"A"}}};
  const auto fault = faultOfSaving([&] { return world; });
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->code(), "snapshot.superclass-cycle");
}

TEST(SavedWorlds, RefuseWordsThatAreNone) {
  embedded::Description world;
  world.path = {{.kind = static_cast<embedded::PathItemDescription::Kind>(7), .folder = "/a"}};
  const auto fault = faultOfSaving([&] { return world; });
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->code(), "snapshot.unknown-word");
  EXPECT_EQ(fault->pointer(), "/path/0/kind");
}

}  // namespace
