#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>
#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/VariableMethods.h>

#include "host/Interpreter.h"
#include "tests/workspace/Workspace.h"

namespace {

using namespace workspace;
using namespace KCOSIntrospection;

class Objects : public Workspace {};

TEST_F(Objects, AnswerForTheirPropertiesOrTheirClassDoes) {
  const std::string walked = "kept p w";
  const std::pair<const char*, std::string> rows[] = {
      {"{'a'; \"b\"}", "kept a b"}, {"{}", "kept"},   {"{'a', 5}", "kept answer p w"}, {"{missing}", "kept answer p w"},
      {"'a'", "kept answer p w"},   {"[]", "kept answer p w"}};
  for (const auto& [answer, expected] : rows) {
    inEvalExp(u"named = ws.Named; named.answer = " + wide(answer) + u";", 0, nullptr, false,
              Tamsix::orvo::EvalSource::Query);
    Names names{u"kept"};
    getObjectPropertyNames(variable("named").get(), names);
    EXPECT_EQ(shownList(names), expected) << answer;
  }
  Names names{u"kept"};
  getObjectPropertyNames(variable("refusing").get(), names);
  EXPECT_EQ(shownList(names), walked);
}

TEST_F(Objects, AnswerCallsOrNot) {
  Names names{u"kept"};
  EXPECT_TRUE(callFunctionOnObject(variable("far").get(), "methods", names));
  EXPECT_EQ(shownList(names), "kept ping both plus pkg.tool far");
  names = {u"kept"};
  const std::pair<const char*, const char*> failing[] = {
      {"far", "nothing"}, {"far", ""}, {"far", "ping"}, {"refusing", "properties"}, {"x", "properties"}, {"mute", "size"}};
  for (const auto& [name, function] : failing)
    EXPECT_FALSE(callFunctionOnObject(variable(name).get(), function, names)) << name << " " << function;
  EXPECT_FALSE(callFunctionOnObject(nullptr, "properties", names));
  EXPECT_EQ(shownList(names), "kept");
}

TEST_F(Objects, OfSomeClassesCompleteNoMethods) {
  // By number, so also for classes that the class system does not know, and for several classes at once.
  for (const char* name : {"nodot", "pair", "big"}) EXPECT_TRUE(isNoDotMethodClass(variable(name).get())) << name;
  for (const char* name : {"pump", "far", "x", "s", "old"})
    EXPECT_FALSE(isNoDotMethodClass(variable(name).get())) << name;
  // The table's names in ascending order, up to the first one that matches.
  host_->startLog();
  isNoDotMethodClass(variable("nodot").get());
  std::vector<std::string> asked;
  for (const std::u16string& name : KCOSContextData::getNoDotMethodClassesExcludeSet()) {
    asked.push_back("\"" + shown(name) + "\"");
    if (name == u"collection") break;
  }
  EXPECT_EQ(callsOf("KclassRegistry::getClassNumber"), asked);
}

TEST_F(Objects, OfferMethodsBehindAVariable) {
  const std::tuple<const char*, const char16_t*, const char*> rows[] = {
      {"pump", u"none", "start Both disp stop"}, {"pump", u"start", "Both disp stop"}, {"pump", u"Start", "start Both disp stop"},
      {"pump", u"", "start Both disp stop"},     {"far", u"far", "ping both"},         {"far", u"", "ping both far"},
      {"broken", u"", "m"},                      {"x", u"", ""},                       {"s", u"", ""}};
  for (const auto& [name, given, expected] : rows)
    EXPECT_EQ(shownList(getMethodsForWSVariable(given, variable(name))), expected) << name << " " << shown(given);
  EXPECT_TRUE(getMethodsForWSVariable(u"x", nullptr).empty());
}

TEST_F(Objects, ArgumentsAreWhatTheFunctionDeclares) {
  using KCOSContextData::getArgumentBlockMetadata;
  const FunctionMetadata declared = getArgumentBlockMetadata(u"ns.f", u"");
  EXPECT_EQ(declared.flags, 5U);
  EXPECT_FALSE(declared.outputArguments);
  const kxArray_tag* inputs = declared.inputArguments.get();
  ASSERT_EQ(kxGetNumberOfElements(inputs), 2U);
  const auto field = [&](std::size_t index, const char* name) { return shownValue(Value(kxGetField(inputs, index, name))); };
  EXPECT_EQ(field(0, "name") + field(0, "class") + field(0, "size") + field(0, "validators") + field(0, "kind"),
            "'x''double'[1 nan]{'mustBeReal'}'positional'");
  EXPECT_EQ(field(1, "name") + field(1, "size") + field(1, "values") + field(1, "kind"), "'mode'[]{'a' 'b'}'name-value'");
  struct Row {
    bool components;
    const char16_t* reference;
    const char16_t* name;
    const char* asked;
    std::uint64_t flags;
  };
  const Row rows[] = {{true, u"ns.f", u"plain", "\"plain\", \"ns.f\"", 5}, {true, u"nope", u"ns.f", "\"ns.f\", null", 5},
                      {true, u"", u"", "\"\", null", 0},                  {true, u"plain", u"ns.f", "\"ns.f\", \"plain\"", 0},
                      {false, u"plain", u"ns.f", "\"ns.f\", null", 5},     {false, u"ns.f", u"nope", "\"nope\", null", 0}};
  for (const Row& row : rows) {
    host_->setComponents(row.components);
    host_->startLog();
    EXPECT_EQ(getArgumentBlockMetadata(row.reference, row.name).flags, row.flags) << row.asked;
    std::string asked;
    std::size_t lookUps = 0, conversions = 0;
    for (const embedded::Call& call : host_->takeLog()) {
      if (call.operation == "omGetFunctionMetadata") asked = call.arguments;
      lookUps += call.operation == "Kdispatcher::findFunction";
      conversions += call.operation.starts_with("fl::i18n::");
    }
    EXPECT_EQ(asked, row.asked);
    EXPECT_EQ(lookUps, row.components ? 1U : 0U);
    EXPECT_EQ(conversions, row.name[0] == u'\0' ? 0U : 1U);
  }
}

}  // namespace
