// Every kind of value, from the text of a snapshot into a live session and out again.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <tuple>

#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/DataTypes.h"
#include "host/Interpreter.h"
#include "tests/snapshot/Saved.h"
#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace {

using Json = nlohmann::ordered_json;

const std::string world = R"({"format": 1,
  "classes": [{"name": "lab.Device", "properties": ["Serial"]},
              {"name": "lab.Pump", "component": "core", "superclasses": ["lab.Device"], "properties": ["Flow"]},
              {"name": "lab.Pump", "component": "other", "properties": ["Head"]},
              {"name": "lab.Mode", "enumeration": true, "members": ["Idle"]}],
  "foreignClasses": [{"name": "net.Kind", "members": ["Fast"]}],
  "packages": [{"name": "old", "classes": ["A", "B"]}],)";

std::string withVariable(const std::string& value) {
  return world + R"("currentFolder": "/", "workspace": [{"name": "v", "value": )" + value + "}]}";
}

std::string savedValue(const std::string& value) {
  const std::string text = saved(embedded::readSnapshotText(withVariable(value), "world"));
  EXPECT_EQ(saved(embedded::readSnapshotText(text, "saved")), text) << value;
  return Json::parse(text).at("workspace").at(0).at("value").dump();
}

TEST(SavedValues, AreWhatTheyWere) {
  for (
      const std::string value :
      {"3",
       "-0.0",
       "0.1",
       "1e+300",
       "5e-324",
       "9007199254740991",
       "9007199254740992.0",
       "-12",
       R"("NaN")",
       R"(["NaN"])",
       R"(["-Inf"])",
       "true",
       "false",
       "[]",
       R"([1,"NaN","Inf","-Inf",-0.0])",
       R"({"double":[1,2,3,4],"size":[2,2]})",
       R"({"double":[],"size":[0,0]})",
       R"({"double":[1,2],"size":[1,2,1]})",
       R"({"logical":[true,false]})",
       R"({"logical":[true,false],"size":[2,1]})",
       R"({"logical":[]})",
       R"("")",
       R"("aä😀\u0000\"")",
       R"({"char":"abcd","size":[2,2]})",
       R"({"char":""})",
       R"({"char":"","size":[0,5]})",
       R"({"string":"text"})",
       R"({"string":null})",
       R"({"string":""})",
       R"({"strings":["a",null]})",
       R"({"strings":[],"size":[0,0]})",
       R"({"strings":["a"],"size":[1,1,1]})",
       R"({"cell":[1,null,{"cell":[]}],"size":[3,1]})",
       R"({"struct":{}})",
       R"({"struct":{"b":1,"a":{"struct":{"c":"x"}}}})",
       R"({"struct":{"a":1},"class":"Older"})",
       R"({"structs":[{"a":1},{"a":2}]})",
       R"({"structs":[{"a":1},{"a":2}],"size":[2,1],"class":"Older"})",
       R"({"structs":[{"a":1}],"size":[1,1,1]})",
       R"({"structs":[],"fields":["a"],"size":[0,0]})",
       R"({"structs":[],"fields":["a","b"]})",
       R"({"structs":[],"size":[2,3]})",
       R"({"structs":[]})",
       R"({"object":"core:lab.Pump","properties":{"Flow":3,"Serial":{"object":"lab.Device"}}})",
       R"({"object":"lab.Mode","member":"Idle"})",
       R"({"object":"lab.Device","text":"bar"})",
       R"({"object":"lab.Device","text":""})",
       R"({"object":"lab.Device","failing":true})",
       R"({"objects":[{"object":"core:lab.Pump"},{"object":"other:lab.Pump"}],"class":"lab.Pump"})",
       R"({"objects":[{"object":"lab.Device"}],"class":"lab.Device"})",
       R"({"objects":[],"class":"lab.Device","size":[0,1]})",
       R"({"objects":[{"opaque":"net.Link"},{"opaque":"net.Link","java":true}],"class":"net.Link","size":[2,1],"foreign":true})",
       R"({"objects":[],"class":"net.Link","size":[0,1],"foreign":true})",
       R"({"objects":[],"class":"korval.metadata.Namespace","size":[0,1]})",
       R"({"object":"korval.metadata.Namespace","properties":{"Name":"lab"}})",
       R"({"opaque":"net.Link","fields":{"host":"h","any":[]},"methods":{"ping":5,"fail":null},"java":true})",
       R"({"opaque":"net.Link","dimensions":"compact"})",
       R"({"opaque":"net.Link","dimensions":"lazy"})",
       R"({"handle":"lab.tune"})",
       R"({"class":"lab.Pump"})",
       R"({"class":"net.Kind"})",
       R"({"foreign":"net.Kind","member":"Fast"})",
       R"({"tall":{"tall":[1,2]}})"})
    EXPECT_EQ(savedValue(value), Json::parse(value).dump());
}

TEST(SavedValues, AreShort) {
  const std::pair<const char*, const char*> rows[] = {
      {R"({"double":[1],"size":[1,1]})", "1"},
      {R"({"double":[1,2]})", "[1,2]"},
      {"-0", "-0.0"},
      {"[0, -0]", "[0,-0.0]"},
      {R"({"logical":[true],"size":[1,1]})", "true"},
      {R"({"char":"ab","size":[1,2]})", R"("ab")"},
      {R"({"char":"","size":[0,0]})", R"("")"},
      {R"({"strings":["a"],"size":[1,1]})", R"({"string":"a"})"},
      {R"({"structs":[{"a":1}]})", R"({"struct":{"a":1}})"},
      {R"({"structs":[{"a":1,"b":2},{"b":3,"a":4}]})", R"({"structs":[{"a":1,"b":2},{"a":4,"b":3}]})"},
      {R"({"structs":[],"size":[1,1]})", R"({"struct":{}})"},
      {R"({"object":"lab.Pump"})", R"({"object":"core:lab.Pump"})"},
      {R"({"class":"core:lab.Pump"})", R"({"class":"lab.Pump"})"},
      {R"({"cell":[],"size":[1,0]})", R"({"cell":[]})"}};
  for (const auto& [value, expected] : rows) EXPECT_EQ(savedValue(value), expected) << value;
}

/// What is saved of the last variable when that code has run in the world.
std::string afterwards(const std::u16string& code) {
  World live(withVariable("[1, 2]"));
  inEvalExp(code, 0, nullptr, false, Tamsix::orvo::EvalSource::Query);
  if (const auto failure = live.host.codeFailure()) return failure->message;
  const std::string text = embedded::snapshotText(live.host.describe());
  EXPECT_EQ(saved(embedded::readSnapshotText(text, "saved")), text);
  return Json::parse(text).at("workspace").back().at("value").dump();
}

TEST(SavedValues, AreThoseThatCodeHasMade) {
  const std::pair<const char16_t*, const char*> rows[] = {
      {u"v(2) = 5;", "[1,5]"},
      {u"x = v';", R"({"double":[1,2],"size":[2,1]})"},
      {u"x = -v(1) * 0;", "-0.0"},
      {u"x = [1/0, 0/0];", R"(["Inf","NaN"])"},
      {u"x = {v, v};", R"({"cell":[[1,2],[1,2]]})"},
      {u"c{3} = 1;", R"({"cell":[null,null,1]})"},
      {u"s(2).a = 1;", R"({"structs":[{"a":{"double":[],"size":[0,0]}},{"a":1}]})"},
      {u"s.b.c = 'x';", R"({"struct":{"b":{"struct":{"c":"x"}}}})"},
      {u"x = v > 1;", R"({"logical":[false,true]})"},
      {u"x = '';", R"("")"},
      {u"x = ['ab'; 'cd'];", R"({"char":"acbd","size":[2,2]})"},
      {u"x = [\"a\", missing];", R"({"strings":["a",null]})"},
      {u"x = @lab.tune;", R"({"handle":"lab.tune"})"},
      {u"d = lab.Device(); d.Serial = 7;", R"({"object":"lab.Device","properties":{"Serial":7}})"},
      {u"d = [lab.Device(), lab.Device()];",
       R"({"objects":[{"object":"lab.Device"},{"object":"lab.Device"}],"class":"lab.Device"})"},
      {u"m = lab.Mode.Idle;", R"({"object":"lab.Mode","member":"Idle"})"},
      {u"k = net.Kind.Fast;", R"({"foreign":"net.Kind","member":"Fast"})"},
      {u"n = korval.metadata.Namespace.getAllNamespaces();",
       R"({"objects":[{"object":"korval.metadata.Namespace","properties":{"Name":"lab"}}],)"
       R"("class":"korval.metadata.Namespace"})"},
      {u"p = findpackage('old'); p = p.Classes;",
       R"({"objects":[{"opaque":"package.class","fields":{"Name":"A"}},{"opaque":"package.class","fields":{"Name":"B"}}],)"
       R"("class":"package.class","size":[2,1],"foreign":true})"}};
  for (const auto& [code, expected] : rows) EXPECT_EQ(afterwards(code), expected) << shown(code);
}

TEST(SavedValues, ThatAreAskedForTheirDimensionsHoldThem) {
  World live(withVariable(R"({"opaque": "net.Link", "dimensions": "lazy"})"));
  kxCompleteDimensions(live.host.variable("v").get());
  const auto after = std::get<embedded::OpaqueObject>(live.host.describe().workspace.at(0).value.content);
  EXPECT_EQ(after.dimensions, embedded::DimensionForm::Full);
}

std::string nested(int levels, const std::string& open, const std::string& close) {
  std::string value = "1";
  for (int level = 0; level < levels; ++level) value = open + value + close;
  return value;
}

TEST(SavedValues, AreNestedAsDeepAsTheyCanBeRead) {
  for (const auto& [levels, open, close] :
       {std::tuple(98, R"({"cell":[)", "]}"), std::tuple(98, R"({"struct":{"a":)", "}}"),
        std::tuple(197, R"({"tall":)", "}")}) {
    const std::string deepest = nested(levels, open, close);
    EXPECT_EQ(savedValue(deepest), deepest);
    embedded::Description deeper = embedded::readSnapshotText(withVariable(deepest), "world");
    for (int more = 0; more < 3; ++more) {
      embedded::TallValue tall;
      tall.inside.push_back(deeper.workspace[0].value);
      deeper.workspace[0].value.content = std::move(tall);
    }
    const auto fault = faultOfSaving([&] { return embedded::Host(deeper).describe(); });
    ASSERT_TRUE(fault) << open;
    EXPECT_EQ(fault->code(), "snapshot.too-deep");
    EXPECT_NE(fault->reason().find("\"v\""), std::string::npos) << fault->what();
  }
}

TEST(SavedValues, FailWithTheNameOfTheVariable) {
  const std::tuple<const char16_t*, const char*, const char*> rows[] = {
      {u"for i = 1:300, c = {v}; v = c; end", "snapshot.too-deep", "\"v\""},
      {u"x = 1; for i = 1:23, x = {x, x}; end", "snapshot.too-big", "\"x\""},
      {u"half = {['a' 55357]};", "snapshot.lone-surrogate", "\"half\""},
      {u"halves = [['a' 56832], \"b\"];", "snapshot.lone-surrogate", "\"halves\""}};
  for (const auto& [code, expected, variable] : rows) {
    World live(withVariable("1"));
    ASSERT_EQ(inEvalExp(code, 0, nullptr, false, Tamsix::orvo::EvalSource::Query), 0) << shown(code);
    const auto fault = faultOfSaving([&live = live] { return live.host.describe(); });
    ASSERT_TRUE(fault) << shown(code);
    EXPECT_EQ(fault->code(), expected) << fault->what();
    EXPECT_NE(fault->reason().find(variable), std::string::npos) << fault->what();
  }
}

// A client can put into a cell what no code can.
TEST(SavedValues, ThatNoSnapshotHasAreRefused) {
  World live(R"({"format": 1, "workspace": [{"name": "v", "value": {"cell": [null]}}], "classes": [
    {"name": "A", "properties": [{"name": "p", "type": "t", "values": [{"object": "A"}]}]}]})");
  const auto type = [](const char* name) { return kcos::internal::makeInterned(name); };
  const auto* conversion = kcos::COSTypeRepository::getConversion(type("any"), type("t"));
  const auto found = kcos::COSClass::getClass(type("A"))->findProperty(type("p"));
  auto values = kcos::cosiToProp(found.get())->getDataType()->getPossibleValues();
  kxSetCell(live.host.variable("v").get(), 0, conversion->convert(values.nextElement()));
  const auto fault = faultOfSaving([&] { return live.host.describe(); });
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->code(), "snapshot.unknown-kind");
  EXPECT_NE(fault->reason().find("\"v\""), std::string::npos) << fault->what();
}

}  // namespace
