// Which properties a class offers, to whom, and in which order.

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "tests/classinfo/Shown.h"
#include "tests/support/Table.h"

namespace {

using KCOSContextData::PropertyInfo;
using Options = PropertyInfo::GetOptions;
using Levels = std::vector<std::int32_t>;

Levels levelsOf(const std::string& text) {
  std::istringstream words(text);
  return {std::istream_iterator<std::int32_t>(words), {}};
}

struct PropertyQueries : testing::Test {
  static std::string of(const std::string& id, const Options& options = {}) {
    return namesOf(Record(id).getProperties(options));
  }

  World world{worldFile("tests/classinfo/properties.json")};
};

TEST_F(PropertyQueries, InheritedOnesComeFirstAndShadowingTakesAllTheirCopies) {
  const Options withHidden{.includeHidden = true};
  const Options withPrivate{.accessLevels = {0, 2}};
  for (const auto& row : rowsOf<4>("tests/classinfo/tables.rows",
                                   "PropertyQueries.InheritedOnesComeFirstAndShadowingTakesAllTheirCopies")) {
    EXPECT_EQ(of(row[0]), row[1]) << row[0];
    EXPECT_EQ(of(row[0], withHidden), row[2]) << row[0];
    EXPECT_EQ(of(row[0], withPrivate), row[3]) << row[0];
    const Record record(row[0]);
    EXPECT_EQ(namesOf(record.getProperties({0}, nullptr)), row[1]) << row[0];
  }
}

TEST_F(PropertyQueries, AccessByLevelAndKind) {
  for (const auto& [levels, kinds, expected] :
       rowsOf<3>("tests/classinfo/tables.rows", "PropertyQueries.AccessByLevelAndKind"))

    EXPECT_EQ(of("Access", {levelsOf(levels), levelsOf(kinds), nullptr, false}), expected);
}

TEST_F(PropertyQueries, AccessByClassWhateverTheKind) {
  const Record root("Root"), a("A"), d("c:D"), nobody("nobody");
  const KCOSContextData::ClassInfo empty(nullptr);
  for (const auto& [accessing, expected] :
       std::vector<std::pair<const KCOSContextData::ClassInfo*, std::string>>{
           {nullptr, ""},
           {&root, "forRoot"},
           {&a, "forA readA writeA forRoot"},
           {&d, "forA readA writeA forRoot"},
           {&nobody, ""},
           {&empty, ""}}) {
    for (const Levels& kinds : {Levels{0, 1}, Levels{0}, Levels{1}, Levels{}, Levels{5}})
      EXPECT_EQ(of("Access", {{9}, kinds, accessing, false}), expected) << kinds.size();
    EXPECT_EQ(namesOf(Record("Access").getProperties({9}, accessing)), expected);
  }
}

TEST_F(PropertyQueries, OneEntryOfLevelTwoIsDroppedPerGeneration) {
  World family(R"({"format": 1, "classes": [
    {"name": "G", "properties": [{"name": "g", "access": "private"}]},
    {"name": "P", "superclasses": ["G"], "properties": [{"name": "p", "access": "private"}]},
    {"name": "C", "superclasses": ["P"], "properties": [{"name": "c", "access": "private"}]}]})");
  for (const auto& [levels, expected] :
       tableOf<2>("0 | ; 2 | c; 2 2 | p c; 2 2 2 | g p c; 9 2 0 2 2 2 | g p c"))
    EXPECT_EQ(of("C", {.accessLevels = levelsOf(levels)}), expected) << levels;
}

TEST_F(PropertyQueries, TheHiddenListStaysUntilTheNextQuery) {
  const Record record("Root");
  record.getProperties({});
  EXPECT_EQ(namesOf(record.propertyVisitor.properties), "");
  EXPECT_EQ(namesOf(record.propertyVisitor.hiddenProperties), "veiled");
  record.getProperties({.includeHidden = true});
  EXPECT_EQ(namesOf(record.propertyVisitor.hiddenProperties), "");
}

}  // namespace
