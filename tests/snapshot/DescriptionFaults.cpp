// Faults that only a description written in code can have: a snapshot cannot say them.

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "embedded/Host.h"

namespace {

using embedded::Description;
using embedded::ValueDescription;

struct Row {
  std::string code;
  std::string pointer;
  std::function<void(Description&)> spoil;
};

/// A variable with this value is added.
std::function<void(Description&)> valued(const ValueDescription& value) {
  return [value](Description& world) { world.workspace.push_back({"x", value}); };
}

ValueDescription number(double value) { return {embedded::DoubleArray{{}, {value}}}; }

Description goodWorld() {
  Description world;
  embedded::ClassDescription pump;
  pump.name = "lab.Pump";
  pump.properties.emplace_back().name = "Flow";
  pump.methods.emplace_back().name = "start";
  world.classes.push_back(pump);
  return world;
}

const embedded::ObjectValue unknownObject{"X", {}, {}};
constexpr std::size_t huge = std::numeric_limits<std::size_t>::max();

/// It executes, and another one is active.
std::function<void(Description&)> scoped(const std::string& executing, const std::string& active) {
  return [=](Description& world) {
    world.scopes.executing = executing;
    world.scopes.active.push_back({active, true});
  };
}

const std::vector<Row> rows{
    {"snapshot.unknown-function", "/scopes/executing", scoped("f", "lab.Pump.start")},
    {"snapshot.unknown-function", "/scopes/active/0/function", scoped("lab.Pump.start", "lab.Pump.Flow")},
    {"snapshot.bad-level", "/classes/0/properties/0",
     [](Description& world) { world.classes[0].properties[0].get.level = 6; }},
    {"snapshot.bad-level", "/classes/0/properties/0",
     [](Description& world) { world.classes[0].properties[0].set.level = -1; }},
    {"snapshot.bad-level", "/classes/0/methods/0",
     [](Description& world) { world.classes[0].methods[0].access.level = 6; }},
    {"snapshot.duplicate-property", "/workspace/0/value/properties/Flow",
     valued({embedded::ObjectValue{"lab.Pump", {{"Flow", number(1)}, {"Flow", number(2)}}, {}}})},
    {"snapshot.duplicate-field", "/workspace/0/value",
     valued({embedded::StructureArray{{}, {"a", "a"}, {number(1), number(2)}}})},
    {"snapshot.wrong-size", "/workspace/0/value",
     valued({embedded::StructureArray{{}, {"a", "b"}, {number(1)}}})},
    {"snapshot.wrong-size", "/workspace/0/value", valued({embedded::StructureArray{{}, {}, {number(1)}}})},
    {"snapshot.wrong-size", "/workspace/0/value/size", valued({embedded::StructureArray{{3}, {}, {}}})},
    {"snapshot.wrong-size", "/workspace/0/value/size", valued({embedded::StructureArray{{huge, 2}, {}, {}}})},
    {"snapshot.wrong-size", "/workspace/0/value/size", valued({embedded::DoubleArray{{huge, 2}, {}}})},
    {"snapshot.wrong-size", "/workspace/0/value/size", valued({embedded::LogicalArray{{1}, {true}}})},
    {"snapshot.wrong-size", "/workspace/0/value/size", valued({embedded::CellArray{{0, 1}, {{}}}})},
    {"snapshot.unknown-class", "/workspace/0/value/struct/a/object",
     valued({embedded::StructureArray{{}, {"a"}, {{unknownObject}}}})},
    {"snapshot.unknown-class", "/workspace/0/value/structs/1/a/object",
     valued({embedded::StructureArray{{}, {"a"}, {number(1), {unknownObject}}}})},
};

TEST(DescriptionFaults, AreRefusedByTheHost) {
  EXPECT_NO_THROW(embedded::Host{goodWorld()});
  for (const auto& row : rows) {
    Description world = goodWorld();
    row.spoil(world);
    try {
      embedded::Host host(world);
      FAIL() << "accepted: " << row.code << " at " << row.pointer;
    } catch (const embedded::SnapshotError& fault) {
      EXPECT_EQ(fault.code(), row.code) << fault.what();
      EXPECT_EQ(fault.pointer(), row.pointer) << fault.what();
      EXPECT_EQ(fault.file(), "");
    }
  }
}

}  // namespace
