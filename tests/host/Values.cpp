// What the array API says of values, all of them made by code.

#include <boost/algorithm/string/join.hpp>

#include "host/Arrays.h"
#include "host/Interpreter.h"
#include "host/Text.h"
#include "tests/host/Rows.h"
#include "tests/support/Table.h"

namespace {

using world::InLab;
using world::runs;
using Value = boost::intrusive_ptr<kxArray_tag>;
namespace text = Tamsix::String;

Value valueOf(const std::string& expression) {
  kxArray_tag* slot = nullptr;
  EXPECT_EQ(0, inEvalExp(fl::i18n::to_ustring(expression), 1, &slot, false, Tamsix::orvo::EvalSource::Query))
      << expression;
  return {slot, false};
}

/// Class, size, and which of the questions the value answers with yes.
std::string about(const kxArray_tag* value) {
  std::vector<std::string> words{kxGetClassName(value)};
  kxCompleteDimensions(value);
  for (std::size_t at = 0; at < kxGetNumberOfDimensions(value); ++at)
    words.push_back(std::to_string(kxGetDimensions(value)[at]));
  const std::pair<const char*, bool> answers[] = {
      {"scalar", kxIsScalar(value)},       {"empty", kxIsEmpty(value)},
      {"object", kxIsObject(value)},       {"opaque", kxIsOpaque(value)},
      {"string", text::isString(value)},   {"text", text::isNonMissingScalarText(value)},
      {"kcos", omIsKCOS(value)},           {"true", kxIsLogicalScalarTrue(value)},
      {"lazy", kxHasLazyDimensions(value)}};
  for (const auto& [word, answer] : answers)
    if (answer) words.emplace_back(word);
  return boost::algorithm::join(words, " ");
}

TEST_F(InLab, ValuesSayWhatTheyAre) {
  for (const auto& [expression, code, expected] : rowsOf<3>("tests/host/tables.rows", "Values")) {
    ASSERT_TRUE(runs());
    const Value value = valueOf(expression);
    EXPECT_EQ(expected, about(value.get())) << expression;
    EXPECT_EQ(code, std::to_string(std::min(kxGetClassID(value.get()), 19))) << expression;
    EXPECT_TRUE(kxIsA(value.get(), kxGetClassName(value.get()).c_str())) << expression;
    EXPECT_FALSE(kxIsA(value.get(), "tall") || kxIsA(value.get(), "java")) << expression;
  }
}

TEST_F(InLab, ValuesOfEveryKindSurviveTheirHost) {
  ASSERT_TRUE(runs());
  const auto rows = rowsOf<3>("tests/host/tables.rows", "Values");
  std::vector<Value> values;
  for (const auto& row : rows) values.push_back(valueOf(row[0]));
  const std::string identity = world::classNamed("lab.Pump").getID().text();
  lab->deactivate();
  lab.reset();
  const std::int64_t alive = world::testedHost().liveValues();
  lab = world::testedHost().build({});
  lab->activate();
  const std::int64_t others = world::testedHost().liveValues() - alive;
  for (std::size_t at = 0; at < rows.size(); ++at) {
    const kxArray_tag* value = values[at].get();
    EXPECT_EQ(rows[at][2], about(value)) << rows[at][0];
    EXPECT_EQ(kxGetClassName(value) == "lab.Pump" ? identity : "", omGetCOSClassID(value).text());
  }
  values.clear();
  if (runs(world::Capability::CountsValues)) {
    EXPECT_EQ(alive - 24, world::testedHost().liveValues() - others) << "with the elements";
  }
}

/// The text of a value by each accessor, or "-" where that throws.
std::string textsOf(const kxArray_tag* value) {
  std::string all;
  for (auto* accessor : {&matrix::get_ustring, &text::getScalarText, &text::getString}) try {
      all += fl::i18n::to_string(accessor(value)) + "|";
    } catch (const foundation::core::except::Exception&) {
      all += "-|";
    }
  return all;
}

TEST_F(InLab, TextIsThatOfRowsAndOfStringScalars) {
  for (const auto& [expression, units, scalar, string] : rowsOf<4>("tests/host/tables.rows", "Texts")) {
    ASSERT_TRUE(runs());
    EXPECT_EQ(units + "|" + scalar + "|" + string + "|", textsOf(valueOf(expression).get())) << expression;
  }
  EXPECT_THROW(text::getScalarText(valueOf("missing").get()), KORVAL::string::MissingNotSupported);
  EXPECT_THROW(text::getScalarText(nullptr), KORVAL::string::MustBeStringScalarOrCharacterVector);
  EXPECT_EQ(u"\u00e4", text::getString(Value(matrix::create(u"\u00e4"), false).get()));
  EXPECT_EQ("string 1 1 scalar string text", about(Value(kxCreateString("a"), false).get()));
}

TEST_F(InLab, ContentsAreBorrowedAndInColumnOrder) {
  ASSERT_TRUE(runs());
  const Value grid = valueOf("[1 2; 3 4]"), word = valueOf("'ab'"), cell = valueOf("{1, 'a'}");
  EXPECT_EQ((std::vector<double>{1, 3, 2, 4}),
            std::vector<double>(kxGetDoubles(grid.get()), kxGetDoubles(grid.get()) + 4));
  EXPECT_EQ(u"ab", std::u16string(kxGetCharacters(word.get()), 2));
  EXPECT_EQ("char 1 1 scalar text", about(kxGetCell(cell.get(), 1)));
  EXPECT_ANY_THROW(kxGetCell(cell.get(), 2));
  const Value structures = valueOf("struct('a', {1, 2}, 'b', 'c')");
  ASSERT_EQ(2, structures->get_number_of_struct_fields());
  EXPECT_STREQ("b", structures->get_struct_field_names()[1]);
  EXPECT_EQ(2, *kxGetDoubles(kxGetField(structures.get(), 1, "a")));
  EXPECT_EQ(nullptr, kxGetField(structures.get(), 0, "A"));
  EXPECT_LE(grid->get_number_of_struct_fields(), 0);
}

TEST_F(InLab, CellsTakeOverWhatIsStored) {
  ASSERT_TRUE(runs());
  const std::int64_t before = world::testedHost().liveValues();
  const std::size_t size[] = {2, 2};
  Value cell(kxCreateCell(2, size), false);
  EXPECT_EQ("cell 2 2", about(cell.get()));
  EXPECT_EQ(nullptr, kxGetCell(cell.get(), 3));
  kxArray_tag* const first = kxCreateString("a");
  kxSetCell(cell.get(), 3, first);
  EXPECT_EQ(first, kxGetCell(cell.get(), 3));
  kxSetCell(cell.get(), 3, kxCreateString("b"));
  kxSetCell(cell.get(), 0, kxCreateString("c"));
  kxSetCell(cell.get(), 0, nullptr);
  EXPECT_ANY_THROW(kxSetCell(cell.get(), 4, kxCreateString("d")));
  EXPECT_EQ(nullptr, kxGetCell(cell.get(), 0));
  cell.reset();
  if (runs(world::Capability::CountsValues)) {
    EXPECT_EQ(before, world::testedHost().liveValues());
  }
}

TEST_F(InLab, ClassReferencesLeadToMembers) {
  ASSERT_TRUE(runs());
  const Value pump(kxCreateClassArray("lab.Pump"), false), color(kxCreateClassArray("lab.Color"), false);
  ASSERT_TRUE(pump && color);
  EXPECT_FALSE(Value(kxCreateClassArray("lab.Nothing"), false));
  EXPECT_FALSE(Value(kxFindTypeMember(pump.get(), "nothing"), false));
  EXPECT_TRUE(Value(kxFindTypeMember(pump.get(), "stop"), false));
  const Value red(kxFindTypeMember(color.get(), "Red"), false);
  ASSERT_TRUE(red);
  EXPECT_EQ("Red", world::classNamed("lab.Color").getEnumerationMemberName(red.get()));
}

TEST(ValidNames, AreCountedFromTheStart) {
  for (const auto& [name, count] : tableOf<2>(R"(
      | 0; a | 1; a1_b c | 4; 1a | 0; _a | 0; a.b | 1; <SPACE>a | 0; a<xC3><xA4> | 1)")) {
    ASSERT_TRUE(runs());
    EXPECT_EQ(count, std::to_string(kxIsValidKorvalNameCount(name.c_str()))) << name;
  }
}

}  // namespace
