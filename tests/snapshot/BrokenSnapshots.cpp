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
    const Fault fault = faultOfText(broken.text);
    EXPECT_EQ(fault.code, broken.code) << fault.what;
    if (broken.code != "snapshot.too-deep")  // the reader gives up at whichever place it is
      EXPECT_EQ(fault.shown, broken.code + (broken.pointer.empty() ? "" : " " + broken.pointer));
    EXPECT_NE(fault.reason.find(broken.reason), std::string::npos) << fault.reason;
    EXPECT_EQ(fault.file, "world.json");
    EXPECT_NE(fault.what.find("[" + broken.code), std::string::npos);
    EXPECT_TRUE(fault.what.starts_with("world.json: "));
  }
}

TEST(BrokenSnapshots, NameTheLineOfTheCulprit) {
  for (const auto& [text, line] :
       rowsOf<2>("tests/snapshot/tables.rows", "BrokenSnapshots.NameTheLineOfTheCulprit")) {
    const std::string reason = faultOfText(text).reason;
    EXPECT_TRUE(reason.starts_with(line)) << text << ": " << reason;
  }
}

// Wherever a good snapshot is cut off, it is no snapshot.
TEST(BrokenSnapshots, TruncatedAtEveryByte) {
  const std::string whole =
      completed("object", R"("properties": {"a": {"structs": [{"s": "ä€😀"}]}}, "member": "m")");
  EXPECT_EQ(faultOfText(whole).shown, "");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const Fault fault = faultOfText(whole.substr(0, length));
    const std::set<std::string> expected{"snapshot.empty", "snapshot.truncated", "snapshot.not-utf8"};
    EXPECT_TRUE(expected.contains(fault.code)) << length << ": " << fault.what;
  }
}

TEST(BrokenSnapshots, LongCulpritsAreCut) {
  const std::string name(1000000, 'n');
  const Fault fault = faultOfText(completed("oneClass", R"("superclasses": [")" + name + "\"]"));
  EXPECT_EQ(fault.shown, "snapshot.unknown-class /classes/0/superclasses/0");
  EXPECT_LT(fault.reason.size(), 300U);
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
