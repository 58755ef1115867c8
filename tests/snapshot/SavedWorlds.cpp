// Everything but values: each key, as it is written.

#include <gtest/gtest.h>

#include <boost/algorithm/string/join.hpp>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

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

// Of keys whose fields have one type: nothing else would see that two of them have changed places.
TEST(SavedWorlds, KeysAreThoseOfTheirFields) {
  const embedded::Description world = worldFile("tests/snapshot/everything.json");
  const auto& [pump, broken, enumeration] = std::tie(world.classes[0], world.classes[1], world.classes[2]);
  const auto& property = pump.properties[12];
  const auto& tune = world.functions[0];
  const auto& argument = tune.arguments->inputs[0];
  EXPECT_TRUE(property.hidden && !property.dependent && !property.conversion &&
              property.optimized->customGetter);
  EXPECT_TRUE(pump.methods[2].isStatic && !pump.methods[2].hidden && pump.hidden && !pump.broken);
  EXPECT_TRUE(broken.broken && broken.flag && !broken.hidden && enumeration.enumeration && !enumeration.flag);
  EXPECT_TRUE(tune.hidden && tune.arguments->furtherInputs && world.scopes.queryable && !world.scopes.bridge);
  EXPECT_LT(world.scopes.debugger->first, world.scopes.debugger->second);
  EXPECT_EQ(boost::join(std::vector{property.type, property.attributes[0].name, pump.aliases[0],
                                    pump.superclasses[0], pump.precedence[1], tune.name, tune.component,
                                    argument.className, argument.validators[0], world.packages[0].classes[0],
                                    world.namespaces[0], world.scopes.executing, world.currentFolder},
                        " "),
            "t x old.Pump B far.Kind lab.tune core double v A idle.space main /here");
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

}  // namespace
