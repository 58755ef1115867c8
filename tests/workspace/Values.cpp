#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Values.h>

#include "host/Interpreter.h"
#include "tests/workspace/Workspace.h"

namespace {

using namespace workspace;

std::string shownSize(const Value& value) {
  std::string all;
  for (const unsigned long extent : getSizeFromKxArray(value.get()))
    all += (all.empty() ? "" : "x") + std::to_string(extent);
  return all;
}

class Values : public Workspace {
 protected:
  Value evaluated(const std::string& text) {
    kxArray_tag* slot = nullptr;
    inEvalExp(wide(text), 1, &slot, false, Tamsix::orvo::EvalSource::Query);
    return makeSharedPtr(slot);
  }
};

TEST_F(Values, OfBuiltInClassesHaveTheirOwnSize) {
  EXPECT_EQ(shownSize({}), "");
  const std::pair<const char*, const char*> rows[] = {
      {"5", "1x1"}, {"[1 2; 3 4; 5 6]", "3x2"}, {"'abc'", "1x3"}, {"[]", "0x0"}, {"{}", "0x0"}, {"zeros(2, 3, 4)", "2x3x4"},
      {"s", "1x1"}, {"arr", "1x3"}, {"empty", "0x0"}, {"h", "1x1"}, {"ref", "1x1"},
      // A tall value has no size, and asking for one runs nothing.
      {"big", ""},
      // Other objects answer for themselves.
      {"pump", "1x1"}, {"pumps", "1x2"}, {"old", "1x1"}, {"far", "1x1"}, {"pair", "1x1"}, {"custom", "4x5x6"},
      {"mute", "1x1"}, {"refusing", ""}};
  for (const auto& [text, size] : rows) {
    const Value value = evaluated(text);
    host_->startLog();
    EXPECT_EQ(shownSize(value), size) << text;
    const bool asks = kxGetClassID(value.get()) >= 18 && value != variable("big");
    EXPECT_EQ(embedded::Host::ranKorvalCode(host_->takeLog()), asks) << text;
  }
}

TEST_F(Values, OfOtherClassesHaveTheSizeThatTheirClassAnswers) {
  const std::pair<const char*, const char*> rows[] = {
      {"[2 3]", "2x3"}, {"[2.9 3]", "2x3"}, {"[-0.9 0.9]", "0x0"}, {"7", "7"}, {"[1; 2; 3]", "1x2x3"},
      {"[-1 3]", ""}, {"[3 -1]", ""}, {"[-0.9999 -1.0001]", ""}, {"[Inf 1]", ""}, {"[1 -Inf]", ""}, {"18446744073709551616", ""},
      {"18446744073709549568", "18446744073709549568"},
      // What is met first counts.
      {"[NaN -1]", "1x1"}, {"[-1 NaN]", ""}, {"[2 NaN]", "1x1"}, {"NaN", "1x1"},
      // Answers that say nothing.
      {"[]", "1x1"}, {"'ab'", "1x1"}, {"{2, 3}", "1x1"}, {"true", "1x1"}, {"\"2\"", "1x1"}};
  for (const auto& [answer, size] : rows) {
    inEvalExp(u"sized = ws.Sized; sized.answer = " + wide(answer) + u";", 0, nullptr, false,
              Tamsix::orvo::EvalSource::Query);
    ASSERT_TRUE(variable("sized")) << answer;
    EXPECT_EQ(shownSize(variable("sized")), size) << answer;
  }
}

TEST_F(Values, AskTheMethodThatTheirClassHas) {
  const std::pair<const char*, const char*> rows[] = {{"custom", "<ws.Custom 1x1>, \"sizeAsDouble\", 1"},
                                                      {"pump", "<ws.Pump 1x1>, \"size\", 1"}};
  for (const auto& [name, call] : rows) {
    host_->startLog();
    getSizeFromKxArray(variable(name).get());
    EXPECT_EQ(callsOf("inCallMethodSingleInputSingleOutput"), std::vector<std::string>{call});
  }
}

TEST_F(Values, AreAskedForTheirDimensionsInTheFormInWhichTheyHoldThem) {
  const std::pair<const char*, const char*> rows[] = {
      {"lazy", "HasLazyDimensions CompleteDimensions HasCompactDimensions GetDimensions GetNumberOfDimensions "},
      {"lazy", "HasLazyDimensions HasCompactDimensions GetDimensions GetNumberOfDimensions "},
      {"pair", "HasLazyDimensions HasCompactDimensions GetRowCount GetColumnCount "}};
  for (const auto& [name, expected] : rows) {
    host_->startLog();
    EXPECT_EQ(shownSize(variable(name)), "1x1");
    std::string asked;
    for (const embedded::Call& call : host_->takeLog())
      if (call.operation.ends_with("Dimensions") || call.operation.ends_with("Count"))
        asked += call.operation.substr(2) + " ";
    EXPECT_EQ(asked, expected) << name;
  }
}

TEST_F(Values, ReadOnePropertyOfOneElement) {
  EXPECT_EQ(shownValue(getSharedProperty(variable("pumps").get(), "Flow", 1)), "2");
  host_->startLog();
  getSharedProperty(variable("pumps").get(), "Flow", 0);
  EXPECT_EQ(callsOf("kxGetPropertyShared"), std::vector<std::string>{"<ws.Pump 1x2>, 0, \"Flow\""});
  for (const char* name : {"Failing", "Secret", "none", ""})
    EXPECT_FALSE(getSharedProperty(variable("pump").get(), name, 0)) << name;
  EXPECT_FALSE(getSharedProperty(variable("pumps").get(), "Flow", 2));
  EXPECT_FALSE(getSharedProperty(variable("x").get(), "Flow", 0));
  EXPECT_FALSE(makeSharedPtr(nullptr));
}

TEST_F(Values, AreObjectsOrNot) {
  for (const char* name : {"pump", "pumps", "broken", "old", "far", "pair"})
    EXPECT_TRUE(isObjectOrIsOpaque(variable(name).get())) << name;
  for (const char* name : {"x", "s", "c", "chr", "str", "h", "ref", "big", "flag"})
    EXPECT_FALSE(isObjectOrIsOpaque(variable(name).get())) << name;
}

TEST_F(Values, ListFieldsAndWhatOpaqueObjectsAnswer) {
  const auto listed = [&](auto list, const char* name) {
    Names names{u"kept"};
    list(variable(name).get(), names);
    return shownList(names);
  };
  using StructContextData::getStructFieldNames;
  EXPECT_EQ(listed(getStructFieldNames, "s"), "kept a t e");
  EXPECT_EQ(listed(getStructFieldNames, "empty"), "kept f g");
  EXPECT_EQ(listed(getStructFieldNames, "old"), "kept a");
  for (const char* name : {"x", "pump", "c"}) EXPECT_EQ(listed(getStructFieldNames, name), "kept");
  EXPECT_EQ(listed(getOpaqueObjectProperties, "far"), "kept host both");
  EXPECT_EQ(listed(getOpaqueObjectMethods, "far"), "kept ping both plus pkg.tool far");
  EXPECT_EQ(listed(getOpaqueObjectMethods, "x"), "kept");
  Names names;
  getOpaqueObjectMethods(nullptr, names);
  EXPECT_TRUE(names.empty());
}

TEST_F(Values, TextsOfCellsComeAllOrNotAtAll) {
  const std::pair<const char*, const char*> rows[] = {
      {"{\"a\", 'b', \"c\"}", "true kept a b c"}, {"{'a', 5}", "false kept"}, {"{5, 'a'}", "false kept"},
      {"{'a', missing}", "false kept"}, {"{'a'; ''}", "true kept a "}, {"{'a', ['b'; 'c']}", "false kept"},
      {"{'a', [\"b\" \"c\"]}", "false kept"}, {"{'a', {'b'}}", "false kept"}, {"{'a', []}", "false kept"},
      {"{}", "true kept"}, {"cell(0, 3)", "true kept"}, {"{'a' 'b'; 'c' 'd'}", "true kept a c b d"},
      {"s", "false kept"}, {"'text'", "false kept"}, {"\"text\"", "false kept"}, {"5", "false kept"}};
  for (const auto& [text, expected] : rows) {
    Names names{u"kept"};
    const bool answer = getStringsFromKxarray(evaluated(text).get(), names);
    EXPECT_EQ(shown(answer) + " " + shownList(names), expected) << text;
  }
  Names names;
  EXPECT_FALSE(getStringsFromKxarray(nullptr, names));
  // A new cell's elements are absent.
  const std::size_t size[] = {1, 2};
  const Value cell = makeSharedPtr(kxCreateCell(2, size));
  EXPECT_FALSE(getStringsFromKxarray(cell.get(), names));
  kxSetCell(cell.get(), 0, matrix::create(std::u16string(u"a\0\xD800\u00e9", 4)));
  EXPECT_FALSE(getStringsFromKxarray(cell.get(), names));
  kxSetCell(cell.get(), 1, kxCreateString("b"));
  EXPECT_TRUE(getStringsFromKxarray(cell.get(), names));
  EXPECT_EQ(names, (Names{std::u16string(u"a\0\xD800\u00e9", 4), u"b"}));
}

TEST_F(Values, ClassesPrecedeEachOtherOneWayOnly) {
  const std::tuple<const char16_t*, const char16_t*, unsigned> rows[] = {
      {u"table", u"ws.Pump", 0xFFFFFFFFU}, {u"ws.Pump", u"table", 1}, {u"table", u"char", 0xFFFFFFFFU},
      {u"char", u"table", 1},              {u"table", u"table", 0},   {u"ws.Pump", u"ws.Base", 0},
      {u"nobody", u"table", 0},            {u"table", u"", 0},        {u"t\u00e4ble", u"char", 0}};
  for (const auto& [a, b, expected] : rows) {
    host_->startLog();
    EXPECT_EQ(GetClassPrecedence(a, b), expected) << shown(a) << " " << shown(b);
    EXPECT_EQ(callsOf("KobjectSystem::precedes").size(), expected == 0xFFFFFFFFU ? 1U : 2U);
  }
  host_->startLog();
  GetClassPrecedence(u"A", u"B");
  EXPECT_EQ(callsOf("KobjectSystem::getClassIdentifier"), (std::vector<std::string>{"\"A\"", "\"B\""}));
}

TEST_F(Values, MembersOfForeignClassesAreToldByTheirNames) {
  struct Row {
    const char16_t* name;
    bool isForeign;
    /// The class that is looked up; empty: none.
    const char* className;
  };
  const Row rows[] = {{u"net.Socket.open", true, "\"net.Socket\""}, {u"net.Socket.close", false, "\"net.Socket\""},
                      {u"Flat.m", true, "\"Flat\""},                {u"Flat.", true, "\"Flat\""},
                      {u"Flat.m.", false, "\"Flat.m\""},            {u".Flat.m", false, "\".Flat\""},
                      {u"Flat", false, ""},                         {u".m", false, ""},
                      {u"", false, ""},                             {u".", false, ""},
                      {u"ws.Pump.make", false, "\"ws.Pump\""},      {u"ws.Pump.Limit", false, "\"ws.Pump\""},
                      {u"ws.Base.Secret", false, "\"ws.Base\""},    {u"nobody.m", false, "\"nobody\""}};
  for (const Row& row : rows) {
    host_->startLog();
    EXPECT_EQ(IsJavaFunction(row.name), row.isForeign) << shown(row.name);
    const std::vector<std::string> expected(row.className[0] != '\0', row.className);
    EXPECT_EQ(callsOf("kxCreateClassArray"), expected) << shown(row.name);
  }
}

}  // namespace
