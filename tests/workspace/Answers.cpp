#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>
#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <set>

#include "tests/support/State.h"
#include "tests/workspace/Queries.h"

namespace {

using namespace workspace;

class Answers : public Workspace {};

/// Also, no row leaves a trace.
TEST_F(Answers, AreThoseOfTheTable) {
  std::set<std::string> asked;
  const std::vector<std::string> all = queryNames();
  for (const Row& row : rowsOfQueries()) {
    asked.insert(row.query);
    const Value value = valueFor(row);
    const State state(*host_);
    EXPECT_EQ(answerTo(*host_, row, value), row.answer) << row.text;
    SCOPED_TRACE(row.text);
    state.expectUnchanged();
  }
  EXPECT_EQ(asked, std::set(all.begin(), all.end()));
}

TEST_F(Answers, OfTheClassesThatCompleteNoMethodsComeUpToTheFirstThatMatches) {
  host_->startLog();
  KCOSIntrospection::isNoDotMethodClass(variable("nodot").get());
  std::vector<std::string> asked, expected;
  for (const embedded::Call& call : host_->takeLog())
    if (call.operation == "KclassRegistry::getClassNumber") asked.push_back(call.arguments);
  for (const std::u16string& name : KCOSContextData::getNoDotMethodClassesExcludeSet()) {
    expected.push_back("\"" + shown(name) + "\"");
    if (name == u"collection") break;
  }
  EXPECT_EQ(asked, expected);
}

TEST_F(Answers, AreFreeOfWhatIsAbsent) {
  EXPECT_FALSE(makeSharedPtr(nullptr));
  const std::size_t size[] = {1, 2};
  const Value cell = makeSharedPtr(kxCreateCell(2, size));
  Names names{u"kept"};
  EXPECT_FALSE(getStringsFromKxarray(cell.get(), names));
  kxSetCell(cell.get(), 0, matrix::create(std::u16string(u"a\0\xD800\u00e9", 4)));
  EXPECT_FALSE(getStringsFromKxarray(cell.get(), names));
  EXPECT_EQ(names, Names{u"kept"});
  kxSetCell(cell.get(), 1, kxCreateString("b"));
  EXPECT_TRUE(getStringsFromKxarray(cell.get(), names));
  EXPECT_EQ(names, (Names{u"kept", std::u16string(u"a\0\xD800\u00e9", 4), u"b"}));
  embedded::Host none((embedded::Description()));
  const embedded::Activation active(none);
  const Value nothing = KCOSContextData::getKCOSAllNamespaces();
  EXPECT_EQ(shownValue(nothing), "{}");
  EXPECT_EQ(kxGetDimensions(nothing.get())[0], 0U);
  EXPECT_EQ(kxGetDimensions(nothing.get())[1], 1U);
}

TEST_F(Answers, HoldTheDeclaredArguments) {
  const FunctionMetadata declared = KCOSContextData::getArgumentBlockMetadata(u"ns.f", u"");
  EXPECT_FALSE(declared.outputArguments);
  ASSERT_EQ(kxGetNumberOfElements(declared.inputArguments.get()), 2U);
  std::string all;
  for (const std::size_t index : {0U, 1U})
    for (const char* field : {"name", "class", "size", "validators", "values", "kind"})
      all += shownValue(Value(kxGetField(declared.inputArguments.get(), index, field))) + " ";
  EXPECT_EQ(all,
            "'x' 'double' [1 nan] {'mustBeReal'} {} 'positional' 'mode' '' [] {} {'a' 'b'} 'name-value' ");
}

}  // namespace
