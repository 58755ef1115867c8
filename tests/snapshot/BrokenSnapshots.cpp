#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

#include "tests/snapshot/Faults.h"
#include "tests/support/Table.h"
#include "tests/support/World.h"

namespace {

/// A text that is no snapshot. The reason holds the culprit, or what was expected.
struct BrokenText {
  std::string text, code, pointer, reason;
};

/// What the cases leave out around their texts: a snapshot with a class, its property, a variable, an object.
std::string completed(const std::string& around, const std::string& text) {
  static const std::map<std::string, std::pair<std::string, std::string>> surroundings{
      {"text", {"", ""}},
      {"world", {R"({"format": 1, )", "}"}},
      {"oneClass", {R"({"format": 1, "classes": [{"name": "lab.Pump", )", "}]}"}},
      {"property",
       {R"({"format": 1, "classes": [{"name": "lab.Pump", "properties": [{"name": "Flow", )", "}]}]}"}},
      {"value", {R"({"format": 1, "workspace": [{"name": "x", "value": )", "}]}"}},
      {"object",
       {R"({"format": 1, "classes": [{"name": "P", "properties": ["a"], "members": ["m"]}],
            "workspace": [{"name": "x", "value": {"object": "P", )",
        "}}]}"}}};
  const auto& [before, behind] = surroundings.at(around);
  return before + text + behind;
}

std::vector<BrokenText> everyBrokenText() {
  std::vector<BrokenText> texts;
  for (const auto& [around, text, code, pointer, reason] : rowsOf<5>("tests/snapshot/broken.cases"))
    texts.push_back({completed(around, text), code, pointer, reason});
  EXPECT_GT(texts.size(), 150U);
  return texts;
}

TEST(BrokenSnapshots, HaveACodeAPlaceAndAReason) {
  for (const auto& broken : everyBrokenText()) {
    SCOPED_TRACE(broken.text.substr(0, 200));
    const auto fault = faultOfText(broken.text);
    ASSERT_TRUE(fault) << "accepted";
    EXPECT_EQ(fault->code(), broken.code) << fault->what();
    if (broken.code != "snapshot.too-deep") {
      EXPECT_EQ(fault->pointer(), broken.pointer);
    }
    EXPECT_NE(fault->reason().find(broken.reason), std::string::npos) << fault->reason();
    EXPECT_EQ(fault->file(), "world.json");
    EXPECT_NE(std::string(fault->what()).find("[" + broken.code), std::string::npos);
    EXPECT_EQ(std::string(fault->what()).rfind("world.json: ", 0), 0U);
  }
}

TEST(BrokenSnapshots, NameTheLineOfTheCulprit) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"{\"format\": 1,\n\n\"flag\": 2}", "line 3: "},
      {"{\"format\": 7\n}", "line 1: "},
      {"{\"format\": 1, \"classes\": [{\"name\": \"A\"},\n{\"name\":\n\"Gr\u00f6\u00dfe\"}]}", "line 3: "},
      {"{\"format\": 1, \"workspace\": [\n{\"name\": \"x\", \"value\":\n{\"object\": \"None\"}}]}",
       "line 3: "},
      {"{\"format\":\r\n7\r\n}", "line 2: "},
      {"// \n/* \n */ {\n\"components\": true\n}", "line 5: "},
  };
  for (const auto& [text, line] : rows) {
    const auto fault = faultOfText(text);
    ASSERT_TRUE(fault) << text;
    EXPECT_EQ(fault->reason().rfind(line, 0), 0U) << fault->reason();
  }
}

// Wherever a good snapshot is cut off, it is no snapshot.
TEST(BrokenSnapshots, TruncatedAtEveryByte) {
  const std::string whole =
      completed("object", R"("properties": {"a": {"structs": [{"s": "ä€😀"}]}}, "member": "m")");
  ASSERT_FALSE(faultOfText(whole));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto fault = faultOfText(whole.substr(0, length));
    ASSERT_TRUE(fault) << length;
    const std::set<std::string> expected{"snapshot.empty", "snapshot.truncated", "snapshot.not-utf8"};
    EXPECT_TRUE(expected.contains(fault->code())) << length << ": " << fault->what();
  }
}

TEST(BrokenSnapshots, LongCulpritsAreCut) {
  const std::string name(1000000, 'n');
  const auto fault = faultOfText(completed("oneClass", R"("superclasses": [")" + name + "\"]"));
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->code(), "snapshot.unknown-class");
  EXPECT_LT(fault->reason().size(), 300U);
}

/// The codes in the first column of the page's tables.
std::set<std::string> documentedCodes() {
  std::ifstream page(sourceFile("docs/snapshot.md"));
  const std::string rowStart = "| `snapshot.";
  std::set<std::string> codes;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with(rowStart)) codes.insert(line.substr(3, line.find('`', 3) - 3));
  }
  return codes;
}

TEST(BrokenSnapshots, EveryDocumentedCodeIsInTheTable) {
  std::set<std::string> codes;
  for (const auto& broken : everyBrokenText()) codes.insert(broken.code);
  // Those of files, of saving, of sessions and of descriptions written in code have tests of their own.
  for (const char* code : {"missing-file", "directory", "unreadable", "duplicate-property", "unwritable",
                           "lone-surrogate", "too-big", "unknown-kind", "unknown-function"})
    EXPECT_TRUE(codes.insert(std::string("snapshot.") + code).second) << code;
  EXPECT_EQ(codes, documentedCodes());
}

}  // namespace
