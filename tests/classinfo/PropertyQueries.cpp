// Which properties a class offers, to whom, and in which order.

#include <gtest/gtest.h>

#include "tests/classinfo/Shown.h"
#include "tests/support/Table.h"

namespace {

using KCOSContextData::PropertyInfo;
using Options = PropertyInfo::GetOptions;
using Levels = std::vector<std::int32_t>;

constexpr const char* snapshot = R"json({"format": 1,
  "classes": [
    {"name": "Root", "properties": ["r", {"name": "veiled", "hidden": true}, {"name": "own", "access": "private"}]},
    {"name": "A", "superclasses": ["Root"], "properties": ["a", {"name": "prot", "access": "protected"}]},
    {"name": "B", "superclasses": ["Root"], "properties": ["b", {"name": "own", "access": "private"}]},
    {"name": "D", "component": "c", "superclasses": ["A", "B"], "properties": ["d", {"name": "own", "access": "private"}]},
    {"name": "Shadows", "superclasses": ["D"],
     "properties": ["s", "r", "s", {"name": "a", "access": "private"}, {"name": "b", "hidden": true}]},
    {"name": "ShadowsHidden", "superclasses": ["Root"], "properties": ["veiled", {"name": "R"}]},
    {"name": "Access", "properties": [
      {"name": "rw"}, {"name": "ro", "set": "private"}, {"name": "wo", "get": "private"},
      {"name": "pp", "access": "private"}, {"name": "const", "constant": true, "get": "protected"},
      {"name": "forA", "access": ["A"]}, {"name": "readA", "get": ["A"], "set": "private"},
      {"name": "writeA", "get": "private", "set": {"level": "private", "classes": ["A"]}},
      {"name": "forRoot", "access": ["Root"]}, {"name": "hid", "hidden": true}]},
    {"name": "Enum", "superclasses": ["Root"], "enumeration": true, "properties": ["e"], "members": ["X"]},
    {"name": "Broken", "superclasses": ["Root"], "broken": true, "properties": ["x"]},
    {"name": "Nameless", "superclasses": ["Root"], "properties": ["y", {"name": null}]},
    {"name": "OfNameless", "superclasses": ["Nameless", "Root"], "properties": ["z"]},
    {"name": "Aliased", "aliases": ["Nickname"], "superclasses": ["Root"], "properties": ["n"]}]})json";

struct PropertyQueries : testing::Test {
  static std::string of(const std::string& id, const Options& options = {}) {
    return namesOf(Record(id).getProperties(options));
  }

  World world{snapshot};
};

TEST_F(PropertyQueries, InheritedOnesComeFirstAndShadowingTakesAllTheirCopies) {
  const Options withHidden{.includeHidden = true};
  const Options withPrivate{.accessLevels = {0, 2}};
  for (const auto& row : tableOf<4>(R"(
    Root | r | r veiled | r own
    A | r a | r veiled a | r a
    c:D | r a r b d | r veiled a r veiled b d | r a r b d own
    Shadows | a d s r s | veiled a veiled d s r s b | d s r s a
    ShadowsHidden | r veiled R | r veiled R | r veiled R
    Enum | r | r veiled | r
    Broken | r | r veiled | r
    Nameless | | |
    OfNameless | | |
    Aliased | r n | r veiled n | r n
    Nickname | r | r veiled | r
    nobody | | |)")) {
    EXPECT_EQ(of(row[0]), row[1]) << row[0];
    EXPECT_EQ(of(row[0], withHidden), row[2]) << row[0];
    EXPECT_EQ(of(row[0], withPrivate), row[3]) << row[0];
    const Record record(row[0]);
    EXPECT_EQ(namesOf(record.getProperties({0}, nullptr)), row[1]) << row[0];
  }
}

TEST_F(PropertyQueries, AccessByLevelAndKind) {
  for (const auto& [levels, kinds, expected] :
       std::vector<std::tuple<Levels, Levels, std::string>>{{{0}, {0, 1}, "rw ro wo"},
                                                            {{0}, {0}, "rw ro"},
                                                            {{0}, {1}, "rw wo"},
                                                            {{0}, {}, ""},
                                                            {{0}, {2, -1, 7}, ""},
                                                            {{0}, {7, 1}, "rw wo"},
                                                            {{}, {0, 1}, ""},
                                                            {{1}, {0, 1}, "const"},
                                                            {{5}, {0, 1}, "const"},
                                                            {{5}, {0}, ""},
                                                            {{2}, {0}, "wo pp writeA"},
                                                            {{4, 2}, {1}, "ro pp forA readA writeA forRoot"},
                                                            {{99, 0}, {0}, "rw ro"}}) {
    EXPECT_EQ(of("Access", {levels, kinds, nullptr, false}), expected);
  }
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
  for (const auto& [levels, expected] : std::vector<std::pair<Levels, std::string>>{
           {{0}, ""}, {{2}, "c"}, {{2, 2}, "p c"}, {{2, 2, 2}, "g p c"}, {{9, 2, 0, 2, 2, 2}, "g p c"}})
    EXPECT_EQ(of("C", {.accessLevels = levels}), expected) << levels.size();
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
