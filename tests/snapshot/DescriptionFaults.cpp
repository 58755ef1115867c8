// Faults that only a description written in code can have: a snapshot cannot say them.

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "tests/snapshot/Saved.h"

namespace {

using namespace embedded;
using Spoil = std::function<void(Description&)>;

/// What refuses a description, and with which code at which place.
enum class By { Host, Saving, Both };
struct Row {
  By by;
  std::string fault;
  Spoil spoil;
};

constexpr std::size_t huge = std::numeric_limits<std::size_t>::max();
const ValueDescription one{DoubleArray{{}, {1}}}, unknown{ObjectValue{"X", {}, {}}};

/// A variable with this value is added.
Spoil valued(const ValueDescription& value) {
  return [value](Description& world) { world.workspace.push_back({"culprit", value}); };
}

/// One function executes, and another one is active.
Spoil scoped(const std::string& executing, const std::string& active) {
  return [=](Description& world) { world.scopes = {.executing = executing, .active = {{active, true}}}; };
}

const std::vector<Row> rows{
    {By::Host, "unknown-function /scopes/executing", scoped("f", "lab.Pump.start")},
    {By::Host, "unknown-function /scopes/active/0/function", scoped("lab.Pump.start", "lab.Pump.Flow")},
    {By::Both, "bad-level /classes/0/properties/0",
     [](auto& world) { world.classes[0].properties[0].get.level = 6; }},
    {By::Both, "bad-level /classes/0/properties/0",
     [](auto& world) { world.classes[0].properties[0].set.level = -1; }},
    {By::Both, "bad-level /classes/0/methods/0",
     [](auto& world) { world.classes[0].methods[0].access.level = 6; }},
    {By::Both, "superclass-cycle /classes/0/superclasses/0",
     [](auto& world) { world.classes[0].superclasses = {"lab.Pump"}; }},
    {By::Both, "duplicate-property /workspace/0/value/properties/Flow",
     valued({ObjectValue{"lab.Pump", {{"Flow", one}, {"Flow", one}}, {}}})},
    {By::Both, "duplicate-field /workspace/0/value", valued({StructureArray{{}, {"a", "a"}, {one, one}}})},
    {By::Both, "wrong-size /workspace/0/value", valued({StructureArray{{}, {"a", "b"}, {one}}})},
    {By::Both, "wrong-size /workspace/0/value", valued({StructureArray{{}, {}, {one}}})},
    {By::Both, "wrong-size /workspace/0/value/size", valued({StructureArray{{3}, {}, {}}})},
    {By::Both, "wrong-size /workspace/0/value/size", valued({StructureArray{{huge, 2}, {}, {}}})},
    {By::Both, "wrong-size /workspace/0/value/size", valued({DoubleArray{{huge, 2}, {}}})},
    {By::Both, "wrong-size /workspace/0/value/size", valued({LogicalArray{{1}, {true}}})},
    {By::Both, "wrong-size /workspace/0/value/size", valued({CellArray{{0, 1}, {{}}}})},
    {By::Both, "unknown-class /workspace/0/value/struct/a/object",
     valued({StructureArray{{}, {"a"}, {unknown}}})},
    {By::Both, "unknown-class /workspace/0/value/structs/1/a/object",
     valued({StructureArray{{}, {"a"}, {one, unknown}}})},
    {By::Both, "unknown-class /workspace/0/value/object", valued(unknown)},
    {By::Both, "unknown-class /workspace/0/value/foreign", valued({ForeignMemberValue{"no.such", "a"}})},
    {By::Saving, "unknown-word /path/0/kind",
     [](auto& world) {
       world.path = {{static_cast<PathItemDescription::Kind>(7), "/a"}};
     }},
    {By::Saving, "lone-surrogate /workspace/0/value", valued({CharacterRow{u"a\xD800"}})},
    {By::Saving, "not-utf8 /workspace/0/value/opaque", valued({OpaqueObject{"\xFF", {}, {}}})},
    {By::Saving, "duplicate-key /workspace/0/value/fields/a",
     valued({OpaqueObject{.className = "F", .fields = {{"a", {}}, {"a", {}}}, .methods = {}}})},
    {By::Both, "bad-name /workspace/0/value/handle", valued({FunctionHandleValue{"a..b"}})}};

TEST(DescriptionFaults, AreRefusedByTheHostOrNotSaved) {
  for (const auto& [by, expected, spoil] : rows) {
    Description world;
    world.classes = {{.name = "lab.Pump", .properties = {{.name = "Flow"}}, .methods = {{.name = "start"}}}};
    EXPECT_NO_THROW(saved(world));
    spoil(world);
    const Fault ofHost = faultOf([&] { Host host(world); }), ofSaving = faultOf([&] { snapshotText(world); });
    EXPECT_EQ(ofHost.shown, by == By::Saving ? "" : "snapshot." + expected) << expected;
    EXPECT_EQ(ofSaving.shown, by == By::Host ? "" : "snapshot." + expected) << expected;
    EXPECT_EQ(ofHost.file + ofSaving.file, "");
    EXPECT_TRUE(world.workspace.empty() || ofSaving.reason.find("\"culprit\"") != std::string::npos)
        << ofSaving.what;
  }
}

}  // namespace
