#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include "host/Arrays.h"
#include "host/Dispatcher.h"
#include "host/Files.h"
#include "host/Frames.h"
#include "host/FunctionMetadata.h"
#include "host/Interpreter.h"
#include "tests/host/Rows.h"

namespace {

using world::InLab;
using world::runs;
using Value = boost::intrusive_ptr<kxArray_tag>;

Value adopted(kxArray_tag* value) { return {value, false}; }
Value variable(const std::string& name) { return adopted(inGetValueFromCurrentWorkspace(name)); }

std::vector<std::size_t> dimensionsOf(const kxArray_tag* value) {
  if (kxHasLazyDimensions(value)) kxCompleteDimensions(value);
  EXPECT_FALSE(kxHasLazyDimensions(value));
  if (kxHasCompactDimensions(value)) return {kxGetRowCount(value), kxGetColumnCount(value)};
  const std::size_t* first = kxGetDimensions(value);
  return {first, first + kxGetNumberOfDimensions(value)};
}

using Extents = std::vector<std::size_t>;

TEST_F(InLab, CellsHoldWhatIsStoredInThem) {
  ASSERT_TRUE(runs());
  const std::int64_t before = world::testedHost().liveValues();
  {
    const Extents size{2, 3, 2};
    const Value cell = adopted(kxCreateCell(3, size.data()));
    EXPECT_EQ(kxGetClassID(cell.get()), 1);
    EXPECT_EQ(dimensionsOf(cell.get()), size);
    EXPECT_EQ(kxGetNumberOfElements(cell.get()), 12U);
    EXPECT_EQ(kxGetCell(cell.get(), 11), nullptr);
    kxArray_tag* text = kxCreateString("text");
    kxSetCell(cell.get(), 11, text);
    EXPECT_EQ(kxGetCell(cell.get(), 11), text);
    kxSetCell(cell.get(), 11, kxCreateString("other"));
    EXPECT_EQ(Tamsix::String::getScalarText(kxGetCell(cell.get(), 11)), u"other");
    kxSetCell(cell.get(), 0, kxCreateString("gone"));
    kxSetCell(cell.get(), 0, nullptr);
    EXPECT_EQ(kxGetCell(cell.get(), 0), nullptr);
    // The reference is taken over also when there is no such element.
    EXPECT_ANY_THROW(kxSetCell(cell.get(), 12, kxCreateString("lost")));
    const Extents none{0, 4};
    EXPECT_TRUE(kxIsEmpty(adopted(kxCreateCell(2, none.data())).get()));
    EXPECT_FALSE(kxIsEmpty(cell.get()) || kxIsScalar(cell.get()));
  }
  if (runs(world::Capability::CountsValues)) {
    EXPECT_EQ(world::testedHost().liveValues(), before);
  }
}

TEST_F(InLab, TextsAreThoseOfStringsAndRows) {
  for (const std::u16string& text : {std::u16string(), std::u16string(u"text"), std::u16string(u"\u00e9\0\xD800", 3)}) {
    ASSERT_TRUE(runs());
    const Value made = adopted(matrix::create(text));
    EXPECT_TRUE(Tamsix::String::isString(made.get()) && Tamsix::String::isNonMissingScalarText(made.get()));
    EXPECT_EQ(matrix::get_ustring(made.get()), text);
    EXPECT_EQ(Tamsix::String::getString(made.get()), text);
    EXPECT_EQ(Tamsix::String::getScalarText(made.get()), text);
  }
  for (const Value& value : {variable("number"), variable("pump")}) {
    EXPECT_FALSE(Tamsix::String::isNonMissingScalarText(value.get()) || Tamsix::String::isString(value.get()));
    EXPECT_ANY_THROW(matrix::get_ustring(value.get()));
    EXPECT_THROW(Tamsix::String::getScalarText(value.get()), KORVAL::string::MustBeStringScalarOrCharacterVector);
  }
  EXPECT_THROW(Tamsix::String::getScalarText(nullptr), KORVAL::string::MustBeStringScalarOrCharacterVector);
}

TEST_F(InLab, ValuesKnowTheirKindAndShape) {
  ASSERT_TRUE(runs());
  const Value pump = variable("pump"), number = variable("number");
  EXPECT_TRUE(kxIsObject(pump.get()) && !kxIsObject(number.get()));
  EXPECT_FALSE(kxIsOpaque(pump.get()) || kxIsOpaque(number.get()) || kxIsLogicalScalarTrue(number.get()));
  EXPECT_EQ(dimensionsOf(number.get()), (Extents{1, 3}));
  EXPECT_EQ(dimensionsOf(pump.get()), (Extents{1, 1}));
  EXPECT_EQ(number->get_number_of_struct_fields(), 0);
  const KclassRegistry& registry = *Kdispatcher::getDispatcher()->getClassRegistry();
  const auto isA = [&](const Value& value, const char* name) {
    return registry.isA(kxGetClassNumber(value.get()), registry.getClassNumber(name));
  };
  EXPECT_TRUE(isA(pump, "lab.Pump") && isA(pump, "Base") && isA(number, "double"));
  EXPECT_FALSE(isA(pump, "lab.small.Valve") || isA(number, "Base") || isA(pump, "double") || isA(pump, "nothing"));
  EXPECT_FALSE(registry.isA(registry.getClassNumber("nothing"), registry.getClassNumber("nothing")));
}

TEST_F(InLab, ClassesAreReferredToByName) {
  ASSERT_TRUE(runs());
  EXPECT_EQ(kxCreateClassArray("nothing"), nullptr);
  const Value reference = adopted(kxCreateClassArray("lab.Pump"));
  ASSERT_TRUE(reference);
  for (const char* name : {"nothing", "", "lab.Pump"}) EXPECT_FALSE(adopted(kxFindTypeMember(reference.get(), name)));
  const KobjectSystem& system = *kdGetObjectSystem();
  const KclassIdentifier* pump = system.getClassIdentifier("lab.Pump");
  EXPECT_EQ(system.getClassIdentifier("nothing"), nullptr);
  EXPECT_FALSE(system.precedes(pump, pump) || system.precedes(pump, nullptr) || system.precedes(nullptr, pump));
  const FunctionMetadata none = omGetFunctionMetadata("nothing", nullptr);
  EXPECT_FALSE(none.inputArguments || none.outputArguments || none.flags != 0);
}

TEST_F(InLab, ValidNamesBeginWithALetter) {
  const std::pair<const char*, int> rows[] = {{"", 0},   {"a", 1},       {"a1_B.c", 4}, {"1a", 0}, {"_a", 0},
                                              {" a", 0}, {"a b", 1},     {"a\xc3\xa9", 1}, {"Z9", 2}, {"a(1)", 1},
                                              {".a", 0}, {"ab\0cd", 2}};
  for (const auto& [text, count] : rows) {
    ASSERT_TRUE(runs());
    EXPECT_EQ(kxIsValidKorvalNameCount(text), count) << text;
  }
}

TEST_F(InLab, FramesAreStoredAndNotTouched) {
  ASSERT_TRUE(runs());
  // Nothing is there: whoever called into these frames would crash.
  const auto frame = [](std::uintptr_t place) { return reinterpret_cast<const IExecutionFrame*>(place); };
  auto outer = Tamsix::orvo::pushFrame(frame(0x10));
  const auto inner = Tamsix::orvo::pushFrame(frame(0x20));
  EXPECT_TRUE(outer && inner);
  outer.reset();
}

TEST_F(InLab, FoldersAreThoseOnDisk) {
  namespace files = std::filesystem;
  using fl::filesystem::file_type;
  ASSERT_TRUE(runs());
  const files::path root = files::temp_directory_path() / "conformance";
  files::create_directories(root / "b");
  for (const char* name : {"a.k", "c.k", ".h"}) std::ofstream(root / name).flush();
  const std::u16string path = root.u16string();
  EXPECT_EQ(fl::filesystem::status(path).type(), file_type::directory);
  EXPECT_EQ(fl::filesystem::status(path + u"/a.k").type(), file_type::regular);
  for (const std::u16string& name : {path + u"/none", path + u"/a.k/none", std::u16string(), path + std::u16string(300, u'x')})
    EXPECT_EQ(fl::filesystem::status(name).type(), file_type::not_found);
  std::vector<FileNameWithStat> entries(1), again;
  ioGetDirList(path + u"/*", entries, 1);
  ioGetDirList(path + u"/*", again, 1);
  ASSERT_EQ(entries.size(), 5U);
  for (std::size_t index = 0; index < again.size(); ++index) EXPECT_EQ(entries[index + 1].name, again[index].name);
  std::ranges::sort(again, {}, &FileNameWithStat::name);
  EXPECT_EQ(again[0].name + again[1].name + again[2].name + again[3].name, u".ha.kbc.k");
  EXPECT_EQ(again[2].status.type(), file_type::directory);
  EXPECT_EQ(again[3].status.type(), file_type::regular);
  files::remove_all(root);
}

}  // namespace
