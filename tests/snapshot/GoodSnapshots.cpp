#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "embedded/Host.h"
#include "tests/snapshot/Faults.h"

namespace {

using embedded::Description;
using embedded::readSnapshotText;
using Names = std::vector<std::string>;

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
  for (const char* text : {R"({"format": 1})", R"({"classes": [], "format": 1})", R"({"format": 1.0})",
                           "\xEF\xBB\xBF{\"format\": 1}", "// a\n{ /* \" */ \"format\": 1 } // }\n\n",
                           R"({"$schema": "snapshot.schema.json", "format": 1})"}) {
    EXPECT_FALSE(faultOfText(text)) << faultOfText(text)->what();
  }
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
  struct Row {
    const char* keys;
    const char* get;
    const char* set;
  };
  const Row rows[] = {
      {R"("hidden": true)", "0", "0"},
      {R"("access": "public")", "0", "0"},
      {R"("access": "protected")", "1", "1"},
      {R"("access": "private")", "2", "2"},
      {R"("access": "immutable")", "3", "3"},
      {R"("access": "listed")", "4", "4"},
      {R"("access": "constant")", "5", "5"},
      {R"("access": ["A", "B"])", "4 A B", "4 A B"},
      {R"("access": [])", "4", "4"},
      {R"("get": "protected")", "1", "0"},
      {R"("set": "private")", "0", "2"},
      {R"("get": {"classes": ["B"], "level": "private"}, "set": ["A"])", "2 B", "4 A"},
      {R"("constant": true)", "0", "5"},
      {R"("constant": false)", "0", "0"},
      {R"("access": "private", "constant": true)", "2", "5"},
      {R"("constant": true, "access": ["A"])", "4 A", "5 A"},
      {R"("constant": true, "get": "private")", "2", "5"},
  };
  for (const auto& row : rows) {
    const auto world = read(R"("classes": [{"name": "A"}, {"name": "B", "properties": [{"name": "p", )" +
                            std::string(row.keys) + "}]}]");
    const auto& property = world.classes[1].properties.at(0);
    EXPECT_EQ(shown(property.get), row.get) << row.keys;
    EXPECT_EQ(shown(property.set), row.set) << row.keys;
  }
}

TEST(GoodSnapshots, KeepEveryFieldOfAClass) {
  const auto world = read(R"("classes": [{
    "name": "lab.Pump", "component": "base", "aliases": ["Pump", "pump.Old"],
    "superclasses": ["Root", "lab.Top", "base:lab.Top", "Alias"],
    "order": "inherited-first", "hidden": true, "broken": true, "flag": true, "enumeration": true,
    "members": ["On", "On", {"name": "Off", "hidden": true}, {"name": null}],
    "attributeNames": [{"names": ["x", "y"]}, {"further": ["z"]}, {}, {"names": [""]}], "precedence": ["Root", "char"]
  }, {"name": "Root", "aliases": ["Alias"], "order": "own-first"},
     {"name": "lab.Top", "component": "base"}])");
  const auto& pump = world.classes.at(0);
  EXPECT_EQ(pump.name, "lab.Pump");
  EXPECT_EQ(pump.component, "base");
  EXPECT_EQ(pump.aliases, (Names{"Pump", "pump.Old"}));
  EXPECT_EQ(pump.superclasses, (Names{"Root", "lab.Top", "base:lab.Top", "Alias"}));
  EXPECT_EQ(pump.order, embedded::WalkOrder::InheritedFirst);
  EXPECT_TRUE(pump.hidden && pump.broken && pump.flag && pump.enumeration);
  ASSERT_EQ(pump.members.size(), 4U);
  EXPECT_EQ(pump.members[1].name, "On");
  EXPECT_FALSE(pump.members[1].hidden);
  EXPECT_TRUE(pump.members[2].hidden);
  EXPECT_FALSE(pump.members[3].name);
  EXPECT_EQ(pump.attributeNames[0].names, (Names{"x", "y"}));
  EXPECT_EQ(pump.attributeNames[1].further, Names{"z"});
  EXPECT_EQ(pump.precedence, (Names{"Root", "char"}));
  EXPECT_EQ(pump.attributeNames[3].names, Names{""});
  const auto& root = world.classes.at(1);
  EXPECT_EQ(root.order, embedded::WalkOrder::OwnFirst);
  EXPECT_FALSE(root.hidden || root.broken || root.flag || root.enumeration);
}

TEST(GoodSnapshots, KeepEveryFieldOfAMember) {
  const auto world = read(R"("classes": [{"name": "A",
    "properties": ["Flow", {"name": "p", "hidden": true, "dependent": true, "type": "double",
      "validation": {"class": "c", "size": [1, ":", 0], "functions": ["f", "g"]}, "conversion": false,
      "values": [1, "a", {"object": "A", "text": "ä"}, {"object": "A", "text": null}, {"object": "A", "failing": true}],
      "attributes": [{"name": "a", "type": "char", "value": true}, {"name": "b"}],
      "optimized": {"customGetter": true}}, {"name": null, "optimized": {"flag": true}}],
    "methods": ["start", {"name": "start", "static": true, "hidden": true, "access": "private"},
      {"name": null, "visible": false}]}])");
  const auto& [flow, p, nameless] =
      std::tie(world.classes[0].properties.at(0), world.classes[0].properties.at(1),
               world.classes[0].properties.at(2));
  EXPECT_EQ(flow.name, "Flow");
  EXPECT_FALSE(flow.hidden || flow.dependent || flow.optimized);
  EXPECT_TRUE(p.hidden && p.dependent);
  EXPECT_EQ(p.type, "double");
  EXPECT_FALSE(flow.validation || flow.values);
  EXPECT_TRUE(flow.conversion && !p.conversion);
  ASSERT_TRUE(p.validation && p.values);
  EXPECT_EQ(p.validation->className, "c");
  EXPECT_EQ(p.validation->size, (std::vector<std::optional<std::size_t>>{1, {}, 0}));
  EXPECT_EQ(p.validation->functions, (Names{"f", "g"}));
  ASSERT_EQ(p.values->size(), 5U);
  const auto object = [&values = *p.values](std::size_t at) {
    return std::get<embedded::ObjectValue>(values[at].content);
  };
  EXPECT_TRUE(object(2).text == u"ä" && !object(3).text && !object(3).failing && object(4).failing);
  ASSERT_EQ(p.attributes.size(), 2U);
  EXPECT_EQ(p.attributes[0].name + p.attributes[0].type, "achar");
  EXPECT_TRUE(p.attributes[0].value);
  EXPECT_FALSE(p.attributes[1].value);
  ASSERT_TRUE(p.optimized && nameless.optimized);
  EXPECT_TRUE(p.optimized->customGetter && !p.optimized->flag);
  EXPECT_TRUE(!nameless.optimized->customGetter && nameless.optimized->flag);
  EXPECT_FALSE(nameless.name);
  const auto& methods = world.classes[0].methods;
  ASSERT_EQ(methods.size(), 3U);
  EXPECT_EQ(methods[0].name, methods[1].name);
  EXPECT_FALSE(methods[0].isStatic || methods[0].hidden || methods[0].visible);
  EXPECT_TRUE(methods[1].isStatic && methods[1].hidden);
  EXPECT_EQ(shown(methods[1].access), "2");
  EXPECT_EQ(methods[2].visible, std::optional(false));
}

TEST(GoodSnapshots, KeepFunctionsScopesAndSurroundings) {
  const auto world = read(R"("components": false, "namespaces": ["a.b", "c"],
    "functions": [{"name": "lab.tune", "component": "k", "imports": ["lab.Pump", "lab.*"], "hidden": true,
                   "visible": true}, {"name": "f", "arguments": {"inputs": [{"name": "x", "size": [":", 3]},
                   {"name": "y", "kind": "repeating", "class": "P", "validators": ["v"], "values": ["a"]}],
                   "furtherOutputs": true}}],
    "scopes": {"queryable": true, "executing": "k:lab.tune", "bridge": false,
               "active": [{"function": "f", "eligible": false}, {"function": "lab.tune"}],
               "debugger": {"focus": "nobody", "first": -2147483648, "second": 2147483647}},
    "path": [{"folder": "/a"}, {"folder": "b", "kind": "package"}, {"folder": "c", "kind": "class"},
             {"folder": "d", "kind": "current"}, {"folder": "e", "kind": "path"}],
    "currentFolder": "x/y", "builtins": ["sin", "sin"])");
  EXPECT_FALSE(world.components);
  EXPECT_EQ(world.namespaces, (Names{"a.b", "c"}));
  ASSERT_EQ(world.functions.size(), 2U);
  EXPECT_EQ(world.functions[0].component + " " + world.functions[0].name, "k lab.tune");
  EXPECT_EQ(world.functions[0].imports, (Names{"lab.Pump", "lab.*"}));
  EXPECT_TRUE(world.functions[0].hidden && world.functions[0].visible.value());
  EXPECT_FALSE(world.functions[1].hidden || world.functions[1].visible);
  ASSERT_TRUE(world.functions[1].arguments && !world.functions[0].arguments);
  const auto& arguments = *world.functions[1].arguments;
  EXPECT_TRUE(arguments.furtherOutputs && !arguments.furtherInputs && arguments.outputs.empty());
  const auto &x = arguments.inputs.at(0), &y = arguments.inputs.at(1);
  EXPECT_TRUE(x.name == "x" && x.kind == x.Positional && x.className.empty() && x.size.size() == 2 &&
              !x.size[0]);
  EXPECT_TRUE(y.kind == y.Repeating && y.className == "P" && y.validators == Names{"v"} &&
              y.values == Names{"a"});
  EXPECT_TRUE(world.scopes.queryable && !world.scopes.bridge);
  EXPECT_EQ(world.scopes.executing, "k:lab.tune");
  ASSERT_EQ(world.scopes.active.size(), 2U);
  EXPECT_EQ(world.scopes.active[0].function, "f");
  EXPECT_TRUE(!world.scopes.active[0].eligible && world.scopes.active[1].eligible);
  ASSERT_TRUE(world.scopes.debugger);
  EXPECT_EQ(world.scopes.debugger->focus, "nobody");
  EXPECT_EQ(world.scopes.debugger->first, std::numeric_limits<int>::min());
  EXPECT_EQ(world.scopes.debugger->second, std::numeric_limits<int>::max());
  using Item = embedded::PathItemDescription;
  const std::vector<Item::Kind> kinds{Item::Path, Item::Package, Item::Class, Item::Current, Item::Path};
  ASSERT_EQ(world.path.size(), kinds.size());
  for (std::size_t index = 0; index < kinds.size(); ++index) EXPECT_EQ(world.path[index].kind, kinds[index]);
  EXPECT_EQ(world.path[1].folder + " " + world.currentFolder, "b x/y");  // a text has no folder of its own
  EXPECT_EQ(world.builtins, (Names{"sin", "sin"}));
}

TEST(GoodSnapshots, NamesMayBeStrange) {
  const std::string longName(100000, 'x');
  for (const std::string name : {"größe", "日本.クラス", "a b", "\\\"", "1", longName.c_str(), "a:b", "/~"}) {
    const auto world = read(R"("classes": [{"name": ")" + name + R"(", "properties": [")" + name + R"("]},
                               {"name": "Other", "superclasses": [")" +
                            name + "\"]}]");
    EXPECT_EQ(world.classes[0].name, name == "\\\"" ? "\"" : name);
    EXPECT_EQ(world.classes[0].properties[0].name, world.classes[1].superclasses[0]);
  }
}

// Three classes answer to one name; the identity goes before the dotted name, that before the alias.
TEST(GoodSnapshots, AnIdentityGoesBeforeADottedNameAndAnAlias) {
  struct Row {
    const char* classes;
    bool cycle;
  };
  const std::string user = R"({"name": "B", "superclasses": ["A"]})";
  const Row rows[] = {
      {R"({"name": "A", "component": "c", "superclasses": ["B"]}, {"name": "A"})", false},
      {R"({"name": "A", "component": "c"}, {"name": "A", "superclasses": ["B"]})", true},
      {R"({"name": "C", "aliases": ["A"], "superclasses": ["B"]}, {"name": "A", "component": "c"})", false},
      {R"({"name": "C", "aliases": ["A"], "superclasses": ["B"]})", true},
      {R"({"name": "A", "component": "c", "superclasses": ["B"]}, {"name": "A", "component": "d"})", true},
      {R"({"name": "A", "component": "d"}, {"name": "A", "component": "c", "superclasses": ["B"]})", false},
  };
  for (const auto& row : rows) {
    const auto fault = faultOfText(R"({"format": 1, "classes": [)" + user + ", " + row.classes + "]}");
    EXPECT_EQ(fault ? fault->code() : "", row.cycle ? "snapshot.superclass-cycle" : "") << row.classes;
  }
}

}  // namespace
