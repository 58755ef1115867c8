// Everything but values: each key, as it is written.

#include <gtest/gtest.h>

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
