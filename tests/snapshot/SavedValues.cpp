// Every kind of value, from the text of a snapshot into a live session and out again.

#include <gtest/gtest.h>

#include <boost/algorithm/string.hpp>
#include <nlohmann/json.hpp>

#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/DataTypes.h"
#include "host/Interpreter.h"
#include "tests/snapshot/Saved.h"
#include "tests/support/Table.h"
#include "tests/support/World.h"

namespace {

using Json = nlohmann::ordered_json;

/// The world of these values with a variable.
std::string withVariable(const std::string& value) {
  const std::string world = contentsOf(sourceFile("tests/snapshot/values.json"));
  return boost::replace_last_copy(world, "1", value);
}

std::string savedValue(const std::string& value) {
  const std::string text = saved(embedded::readSnapshotText(withVariable(value), "world"));
  EXPECT_EQ(saved(embedded::readSnapshotText(text, "saved")), text) << value;
  return Json::parse(text).at("workspace").at(0).at("value").dump();
}

/// Its class, its size, what it prints, and what more code finds in it.
TEST(SavedValues, AreInTheSessionWhatTheTextSays) {
  for (const auto& [value, more, expected] : rowsOf<3>("tests/snapshot/values.rows", "in the session")) {
    World live(withVariable(value));
    const std::string code = "disp(class(v))\ndisp(size(v))\nv\n" + more;
    inEvalExp(wide(code), 0, nullptr, true, Tamsix::orvo::EvalSource::Query);
    std::string printed = narrow(live.host.takeOutput());
    boost::replace_all(printed, "\n", "; ");
    EXPECT_EQ(boost::trim_right_copy_if(printed, boost::is_any_of("; ")), expected) << value;
  }
}

TEST(SavedValues, AreWhatTheyWere) {
  for (const auto& [value] : rowsOf<1>("tests/snapshot/values.rows", "saved as they were"))
    EXPECT_EQ(savedValue(value), Json::parse(value).dump());
}

TEST(SavedValues, AreShort) {
  for (const auto& [value, expected] : rowsOf<2>("tests/snapshot/values.rows", "saved shorter"))
    EXPECT_EQ(savedValue(value), expected) << value;
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
  for (const auto& [code, expected] : rowsOf<2>("tests/snapshot/values.rows", "made by code"))
    EXPECT_EQ(afterwards(wide(code)), expected) << code;
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
    const Fault fault = faultOf([&] { saved(deeper); });
    EXPECT_EQ(fault.code, "snapshot.too-deep") << open << fault.what;
    EXPECT_NE(fault.reason.find("\"v\""), std::string::npos) << fault.what;
  }
}

void expectUnsaved(const World& live, const std::string& code, const std::string& variable) {
  const Fault fault = faultOf([&] { embedded::snapshotText(live.host.describe()); });
  EXPECT_EQ(fault.code, code) << fault.what;
  EXPECT_NE(fault.reason.find(variable), std::string::npos) << fault.what;
}

TEST(SavedValues, FailWithTheNameOfTheVariable) {
  for (const auto& [code, expected, variable] : rowsOf<3>("tests/snapshot/values.rows", "not saved")) {
    World live(withVariable("1"));
    ASSERT_EQ(inEvalExp(wide(code), 0, nullptr, false, Tamsix::orvo::EvalSource::Query), 0) << code;
    expectUnsaved(live, expected, variable);
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
  expectUnsaved(live, "snapshot.unknown-kind", "\"v\"");
}

}  // namespace
