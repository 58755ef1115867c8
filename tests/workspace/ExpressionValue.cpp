#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/Values.h>

#include <random>

#include "tests/workspace/Workspace.h"

namespace {

using namespace workspace;

struct Row {
  std::u16string expression;
  const char* value;
  /// How often the interpreter is asked to evaluate.
  std::size_t evaluations;
};

const std::vector<Row> rows{
    // What begins with no variable is never evaluated.
    {u"", "nothing", 0}, {u" x", "nothing", 0}, {u"1", "nothing", 0}, {u"-x", "nothing", 0}, {u"(x)", "nothing", 0},
    {u"_x", "nothing", 0}, {u"nope", "nothing", 0}, {u"nope.a", "nothing", 0}, {u"nope + 1", "nothing", 0},
    {u"disp('x')", "nothing", 0}, {u"\u00e9", "nothing", 0}, {std::u16string(u"\0x", 2), "nothing", 0},
    {u"x", "5", 0}, {u"x + 1", "6", 1}, {u"x ", "5", 1}, {u"x.", "nothing", 1}, {u"x.1", "nothing", 1},
    {u"x; 7", "nothing", 1}, {u"x = 7", "nothing", 1}, {u"x\u00e9", "nothing", 1},
    {u"x(", "nothing", 1}, {u"x'a", "nothing", 1}, {u"x]}", "nothing", 1}, {u"row(2)", "2", 1},
    // Structures of one element, of any kind.
    {u"s.a", "struct", 0}, {u"s.a.b", "5", 0}, {u"s.t", "'text'", 0}, {u"s.e", "[]", 0}, {u"s.nofield", "nothing", 1},
    {u"s.a.", "nothing", 1}, {u"s..a", "nothing", 1}, {u"s.a b", "nothing", 1}, {u"s(1).a.b", "5", 1},
    {u"s.a(1).b", "5", 1}, {u"s.('a')", "nothing", 1}, {u"one.f", "8", 0}, {u"old", "Older", 0}, {u"old.a", "6", 0},
    {u"old.b", "nothing", 1},
    // Of several, or of none, nothing is followed.
    {u"arr", "struct", 0}, {u"arr.f", "nothing", 0}, {u"arr.none", "nothing", 0}, {u"arr.", "nothing", 1},
    {u"arr(2).f", "2", 1}, {u"empty.f", "nothing", 0}, {u"olds.a", "nothing", 0}, {u"pumps.Flow", "nothing", 0},
    {u"pumps(2).Flow", "2", 1}, {u"row.a", "nothing", 0},
    // Objects: methods before properties, and what cannot be read is left to the evaluation.
    {u"pump.Flow", "3", 0}, {u"pump.Limit", "10", 0}, {u"pump.Inner.a.Deep", "7", 0}, {u"pump.start", "nothing", 0},
    {u"pump.Both", "nothing", 0}, {u"pump.make", "nothing", 0}, {u"pump.quiet", "nothing", 0},
    {u"pump.mine", "nothing", 0}, {u"pump.Failing", "nothing", 1}, {u"pump.Secret", "nothing", 1},
    {u"pump.none", "nothing", 1}, {u"pump.flow", "nothing", 1}, {u"s.a.p.Flow", "3", 0}, {u"pump.Both()", "nothing", 0},
    {u"broken.p", "1", 0}, {u"broken.m", "nothing", 0},
    {u"far.host", "'h'", 0}, {u"far.ping", "nothing", 0}, {u"far.both", "nothing", 0}, {u"far.none", "nothing", 1},
    // Whatever else has a dot behind it has no fields.
    {u"x.a", "nothing", 0}, {u"flag.a", "nothing", 0}, {u"chr.a", "nothing", 0}, {u"str.a", "nothing", 0},
    {u"c.a", "nothing", 0}, {u"h.a", "nothing", 0}, {u"ref.Flow", "nothing", 0}, {u"big.a", "nothing", 0},
    {u"s.t.u", "nothing", 0}, {u"c{2}", "'two'", 1},
    // A member of a foreign class is no field, though there is a variable of that name.
    {u"net.Socket.open", "nothing", 0}, {u"net.Socket", "struct", 0}, {u"net.Socket.close", "nothing", 1}};

class ExpressionValue : public Workspace {};

TEST_F(ExpressionValue, IsWalkedToOrEvaluatedAsTyped) {
  for (const Row& row : rows) {
    host_->startLog();
    const Value value = GetValueFromCurrentWorkspace(row.expression);
    const std::vector<std::string> evaluations = callsOf("inEvalExp");
    EXPECT_EQ(shownValue(value), row.value) << shown(row.expression);
    EXPECT_EQ(evaluations.size(), row.evaluations) << shown(row.expression);
  }
  EXPECT_EQ(shownValue(variable("x")), "5");
  EXPECT_EQ(host_->takeOutput(), u"");
}

TEST_F(ExpressionValue, IsEvaluatedFromTheTextAsTypedWithoutTheFlag) {
  host_->startLog();
  GetValueFromCurrentWorkspace(u"x + '\u00e9'");
  EXPECT_EQ(callsOf("inEvalExp"), std::vector<std::string>{"\"x + '\u00e9'\", 1, false, 3"});
}

TEST_F(ExpressionValue, CallsNoMethod) {
  for (const char16_t* expression : {u"pump.Both", u"far.both"}) {
    host_->startLog();
    GetValueFromCurrentWorkspace(expression);
    for (const embedded::Call& call : host_->takeLog()) {
      EXPECT_NE(call.operation, "kxGetPropertyShared");
      EXPECT_EQ(call.operation == "inCallFcn" && call.arguments.find("both") != std::string::npos, false);
    }
  }
}

TEST_F(ExpressionValue, SurvivesTextsThatAreNoExpressions) {
  const std::u16string megabyte(1U << 20U, u'+');
  std::u16string fields = u"s";
  for (int count = 0; count < 2000; ++count) fields += u".a";
  std::u16string brackets(100000, u'(');
  for (const std::u16string& expression : {u"x" + megabyte, fields, u"x" + brackets, u"x" + std::u16string(megabyte.size(), u'a'),
                                           u"x." + std::u16string(megabyte.size(), u'"')})
    EXPECT_FALSE(GetValueFromCurrentWorkspace(expression)) << shown(expression.substr(0, 5));
  EXPECT_TRUE(GetValueFromCurrentWorkspace(u"x" + std::u16string(megabyte.size(), u' ')));
}

TEST_F(ExpressionValue, IsWhatASilentEvaluationGives) {
  std::mt19937 random(7);
  const std::vector<std::u16string> parts{u"s", u"a", u"b", u"p", u"t", u"e", u"Flow", u"Inner", u"Deep", u"Limit",
                                          u"pump", u"one", u"f", u"old", u"host", u"far", u"x", u"net", u"Socket"};
  std::size_t walked = 0;
  for (int count = 0; count < 3000; ++count) {
    std::u16string expression = parts[random() % parts.size()];
    for (std::size_t fields = random() % 4; fields > 0; --fields) expression += u"." + parts[random() % parts.size()];
    host_->startLog();
    const Value value = GetValueFromCurrentWorkspace(expression);
    if (!callsOf("inEvalExp").empty() || !value) continue;
    kxArray_tag* slot = nullptr;
    ASSERT_TRUE(EvalcExpSuccessful(expression, 1, &slot, true)) << shown(expression);
    EXPECT_EQ(shownValue(makeSharedPtr(slot)), shownValue(value)) << shown(expression);
    ++walked;
  }
  EXPECT_GT(walked, 200U);
}

}  // namespace
