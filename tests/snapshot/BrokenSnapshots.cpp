#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <stdexcept>

#include "tests/snapshot/Faults.h"
#include "tests/support/Table.h"
#include "tests/support/World.h"

namespace {

/// The text with what the cases leave out around it: a snapshot with a class, its property, a variable, an object.
std::string completed(const std::string& around, const std::string& text) {
  static const auto surroundings = rowsOf<3>("tests/snapshot/tables.rows", "BrokenSnapshots.Surroundings");
  for (const auto& [name, before, after] : surroundings)
    if (name == around) return before + text + after;
  throw std::invalid_argument(around);
}

// The reason holds the culprit, or what was expected.
TEST(BrokenSnapshots, HaveACodeAPlaceAndAReason) {
  const auto rows = rowsOf<5>("tests/snapshot/broken.cases");
  EXPECT_GT(rows.size(), 150U);
  for (const auto& [around, text, code, place, reason] : rows) {
    SCOPED_TRACE(around + ": " + text.substr(0, 200));
    const Fault fault = faultOfText(completed(around, text));
    EXPECT_EQ(fault.code, code) << fault.what;
    const bool isAnywhere = code == "snapshot.too-deep";  // where the reader gives up
    EXPECT_EQ(fault.shown, isAnywhere ? fault.shown : code + (place.empty() ? "" : " " + place));
    EXPECT_NE(fault.reason.find(reason), std::string::npos) << fault.reason;
    EXPECT_EQ(fault.file, "world.json");
    EXPECT_NE(fault.what.find("[" + code), std::string::npos);
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
  for (const auto& row : rowsOf<5>("tests/snapshot/broken.cases")) codes.insert(row[2]);
  // Those of files, of saving, of sessions and of descriptions written in code have tests of their own.
  for (const char* code : {"missing-file", "directory", "unreadable", "duplicate-property", "unwritable",
                           "lone-surrogate", "too-big", "unknown-kind", "unknown-function"})
    EXPECT_TRUE(codes.insert(std::string("snapshot.") + code).second) << code;
  EXPECT_EQ(codes, documentedCodes());
}

}  // namespace
