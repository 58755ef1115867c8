#include "tests/faults/FaultWorld.h"

namespace faults {

namespace {

// In class lab.Pump every method that is visible is public and not repeated, so that asking for the access of a method
// is what precedes its being listed.
constexpr const char* world = R"json({
  "format": 1,
  "classes": [
    {"name": "lab.Device", "component": "plant", "flag": true,
     "properties": ["Serial", {"name": "Secret", "access": "private"}],
     "methods": ["Device", "reset", {"name": "list", "static": true}]},
    {"name": "lab.Pump", "component": "plant", "aliases": ["Pumpe"], "superclasses": ["lab.Device"], "flag": true,
     "properties": ["Flow", {"name": "Limit", "constant": true}, {"name": "Cache", "hidden": true},
                    {"name": "Level", "get": "private"}],
     "methods": ["Pump", "start", {"name": "make", "static": true}, {"name": "stop"},
                 {"name": "debug", "hidden": true}]},
    {"name": "lab.Mode", "enumeration": true, "members": ["Idle", {"name": "Test", "hidden": true}, "Running"]},
    {"name": "info.Root", "properties": [{"name": "r", "access": {"level": "public", "classes": ["info.Base"]}}],
     "methods": [{"name": "r", "access": {"level": "public", "classes": ["info.Base"]}}],
     "attributeNames": [{"names": ["r"]}, {}, {}, {}]},
    {"name": "info.Base", "superclasses": ["info.Root"], "properties": ["b"], "methods": ["b"],
     "attributeNames": [{"names": ["b"]}, {}, {}, {}]},
    {"name": "info.Child", "superclasses": ["info.Base"], "properties": ["c"], "methods": ["c"],
     "attributeNames": [{"names": ["c"]}, {}, {}, {}]},
    {"name": "info.Rich", "properties": [
      {"name": "finite", "type": "t",
       "values": [1, {"object": "info.Root", "text": "u"}, {"object": "lab.Mode", "member": "Running"}]},
      {"name": "fast", "optimized": {}, "attributes": [{"name": "QRDGetSet", "type": "logical scalar"}]},
      {"name": "typed", "validation": {"class": "double", "size": [1, ":"], "functions": ["f"]}}]}
  ],
  "functions": [{"name": "lab.tune", "imports": ["lab.Pump"]}],
  "workspace": [{"name": "pump", "value": {"object": "lab.Pump", "properties": {"Flow": 3}}},
                {"name": "root", "value": {"object": "info.Root"}}],
  "scopes": {"queryable": true,
             "active": [{"function": "lab.tune", "eligible": false}, {"function": "lab.tune"}],
             "debugger": {"focus": "elsewhere"}}
})json";

}  // namespace

std::unique_ptr<embedded::Host> makeWorld() {
  return std::make_unique<embedded::Host>(embedded::readSnapshotText(world, "world"));
}

embedded::Host*& activeWorld() {
  static embedded::Host* world = nullptr;
  return world;
}

boost::intrusive_ptr<kxArray_tag> variable(const std::string& name) { return activeWorld()->variable(name); }

}  // namespace faults
