// Everything but values: each key, as it is written.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include "tests/snapshot/Saved.h"
#include "tests/support/World.h"

namespace {

using Json = nlohmann::ordered_json;

/// Every key that is read, with something else than its default, in the order of the writer.
constexpr const char* everything = R"({
  "format": 1, "components": false, "namespaces": ["idle.space"],
  "classes": [
    {"name": "lab.Pump", "component": "core", "aliases": ["old.Pump"], "superclasses": ["B"], "order": "inherited-first",
     "hidden": true, "broken": true, "flag": true, "enumeration": true,
     "properties": [
       "plain", {"name": null}, {"name": "a", "access": "private"}, {"name": "b", "access": ["B"]},
       {"name": "c", "access": {"level": "private", "classes": ["B"]}}, {"name": "d", "get": "protected"},
       {"name": "e", "set": "immutable"}, {"name": "f", "get": [], "set": "private"}, {"name": "g", "constant": true},
       {"name": "h", "get": "private", "constant": true}, {"name": "i", "access": "constant"},
       {"name": "j", "get": ["B"], "set": {"level": "constant", "classes": ["B"]}},
       {"name": "k", "hidden": true, "dependent": true, "type": "t",
        "validation": {"class": "double", "size": [1, ":"], "functions": ["f"]}, "values": [1, "a"], "conversion": false,
        "attributes": [{"name": "x", "type": "y", "value": true}], "optimized": {"customGetter": true, "flag": true},
        "value": [1, 2], "getter": "1"},
       {"name": "l", "validation": {}, "values": [], "optimized": {}}],
     "methods": ["m", "m", {"name": "n", "access": "protected", "static": true, "hidden": true, "visible": true, "code": "1"},
                 {"name": "o", "visible": false}],
     "members": ["Idle", {"name": "Test", "hidden": true}],
     "attributeNames": [{"names": ["p"], "further": ["q"]}, {}, {}, {}], "precedence": ["B", "far.Kind", "double"]},
    {"name": "B"}],
  "functions": [
    {"name": "lab.tune", "component": "core", "imports": ["lab.*"], "hidden": true, "visible": true,
     "arguments": {"inputs": [{"name": "x", "kind": "optional", "class": "double", "size": [":", 2],
                               "validators": ["v"], "values": ["w"]}, {"name": "y", "kind": "repeating"},
                              {"name": "z", "kind": "name-value"}],
                   "outputs": [{"name": "x"}], "furtherInputs": true, "furtherOutputs": true},
     "code": "1"},
    {"name": "main", "arguments": {}}],
  "packages": [{"name": "old", "classes": ["A"], "functions": ["f"]}],
  "foreignClasses": [{"name": "far.Kind", "members": ["Fast"]}],
  "workspace": [{"name": "v", "value": 1}],
  "scopes": {"queryable": true, "executing": "main", "active": [{"function": "main", "eligible": false}, {"function": "main"}],
             "bridge": false, "debugger": {"focus": "here", "first": 1, "second": -2}},
  "path": [{"folder": "/a"}, {"folder": "/b", "kind": "class"}, {"folder": "/c", "kind": "package"},
           {"folder": "/d", "kind": "current"}],
  "currentFolder": "/here", "builtins": ["sum", "sum"]})";

TEST(SavedWorlds, KeepEveryKey) {
  const std::string text = saved(embedded::readSnapshotText(everything, "world"));
  EXPECT_EQ(text, Json::parse(everything).dump(2) + "\n");
  EXPECT_EQ(saved(embedded::readSnapshotText(text, "saved")), text);
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
  const char* source = std::getenv("CONTEXTDATA_SOURCE");
  std::ifstream file(std::string(source ? source : ".") + "/share/contextdata/snapshot.schema.json");
  Json schema = Json::parse(file);
  schema["$defs"].erase("value");
  std::set<std::string> known, written;
  collectKnownKeys(schema, known);
  collectKeys(Json::parse(everything), written);
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
