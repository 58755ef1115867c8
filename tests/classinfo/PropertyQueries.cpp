// Which properties a class offers, to whom, and in which order.

#include <gtest/gtest.h>

#include "tests/classinfo/Shown.h"
#include "tests/support/Table.h"

namespace {

using KCOSContextData::PropertyInfo;
using Options = PropertyInfo::GetOptions;
using Levels = std::vector<std::int32_t>;

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
  for (const auto& [id, expected] :
       rowsOf<2>("tests/classinfo/tables.rows", "PropertyQueries.AccessByClassWhateverTheKind")) {
    const Record record(id);  // of no class for the empty one
    const Record* accessing = id == "nobody at all" ? nullptr : &record;
    for (const Levels& kinds : {Levels{0, 1}, Levels{0}, Levels{1}, Levels{}, Levels{5}})
      EXPECT_EQ(of("Access", {{9}, kinds, accessing, false}), expected) << id << kinds.size();
    EXPECT_EQ(namesOf(Record("Access").getProperties({9}, accessing)), expected) << id;
  }
}

TEST_F(PropertyQueries, OneEntryOfLevelTwoIsDroppedPerGeneration) {
  for (const auto& [levels, expected] :
       rowsOf<2>("tests/classinfo/tables.rows", "PropertyQueries.OneEntryOfLevelTwoIsDroppedPerGeneration"))
    EXPECT_EQ(of("Child", {.accessLevels = levelsOf(levels)}), expected) << levels;
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
