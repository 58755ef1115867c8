#include <contextdata/KCOSContextData.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/SearchPath.h>
#include <contextdata/Workspace/Values.h>

#include <set>

#include "contextdata/MemberNames.h"
#include "tests/support/State.h"
#include "tests/support/World.h"
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
  std::string asked, expected;
  for (const embedded::Call& call : host_->takeLog())
    if (call.operation == "KclassRegistry::getClassNumber") asked += call.arguments;
  for (const std::u16string& name : KCOSContextData::getNoDotMethodClassesExcludeSet())
    if (name <= u"collection") expected += "\"" + shown(name) + "\"";
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

/// An element of a list that the operation makes longer, and so moves.
TEST_F(Answers, AcceptArgumentsThatLiveInTheirResult) {
  using Ask = std::function<void(const std::u16string&, Names&)>;
  bool flag = false;
  const auto members = [&flag](bool (*list)(const std::u16string&, Names&, bool&)) -> Ask {
    return [list, &flag](const std::u16string& name, Names& names) { list(name, names, flag); };
  };
  using namespace KCOSContextData;
  const std::vector<std::pair<std::u16string, Ask>> rows{
      {u"old", PKXContextData::getPackageStrings},
      {u"@p", [](const auto& folder, Names& names) { getWhatList(folder, names, ".k"); }},
      {u"ns", getNamespaceFunctionNames},
      {u"ns", getNamespaceClassNames},
      {u"ns", getNamespaceNamespaceNames},
      {u"ws.Pump", members(getClassPropertyNames)},
      {u"ws.Base", members(getClassConstantPropertyNames)},
      {u"ws.Pump", members(getClassMethodNames)},
      {u"ws.Pump", members(getClassNonStaticMethodNames)},
      {u"ws.Pump", members(getClassStaticMethodNames)}};
  for (const auto& [argument, ask] : rows) {
    Names expected{argument};
    expected.shrink_to_fit();
    Names names = expected;
    names.shrink_to_fit();
    ask(argument, expected);
    ask(names[0], names);
    EXPECT_EQ(names, expected);
    EXPECT_GT(names.size(), 1U) << shown(argument);
  }
  // The lists of a record's visitors are refilled by its queries.
  const ClassInfo pump(ResolvedClassID::fromKnownResolvedClassID("ws.Pump"));
  const std::size_t all = pump.getProperties({0, 1, 2}, nullptr).size();
  EXPECT_EQ(pump.getProperties(pump.propertyVisitor.accessLevels, nullptr).size(), all);
  const std::size_t methods = pump.getMethods({0, 2}, MethodInfo::GetContext::Any, nullptr).size();
  EXPECT_EQ(pump.getMethods(pump.methodVisitor.access, pump.methodVisitor.context, nullptr).size(), methods);
}

/// What "findpackage" and "isa" return may be of any size.
TEST_F(Answers, OnlyOnePackageObjectIsAPackage) {
  for (const char* found : {"Held.Found", "Held.Both", "[]"}) {
    embedded::Description packages = worldFile("tests/workspace/packages.json");
    packages.functions[0].code = std::string("function r = findpackage(name) r = ") + found + "; end";
    const World world(packages);
    const bool isPackage = found == std::string("Held.Found");
    Names names;
    EXPECT_EQ(PKXContextData::getPackageStrings(u"p", names), isPackage) << found;
    EXPECT_EQ(IsPKXPackage(u"p"), isPackage) << found;
  }
}

/// What the heads of the exported headers, and the README, say of examples/lab.json.
TEST(Examples, PrintWhatTheirCommentsSay) {
  const auto host = embedded::Host::load(sourceFile("examples/lab.json"));
  const embedded::Activation active(*host);
  using namespace KCOSContextData;
  bool flag = false, isStatic = true;
  Names names, same, members{u"kept"}, fields;
  getClassPropertyNames(ResolvedClassID(u"lab.control.tune", u"Pump"), names, flag);
  getClassPropertyNames(u"lab.Pump", same, flag);
  EXPECT_EQ(names, same);
  EXPECT_TRUE(getClassEnumerationNames(ResolvedClassID::fromLegacyString("lab.Mode"), members, flag));
  StructContextData::getStructFieldNames(host->variable("settings").get(), fields);
  EXPECT_EQ(shownList(names).substr(0, 15) + "; " + shownList(members) + "; " + shownList(fields),
            "Flow Mode Unit ; kept Manual Automatic; interval verbose levels");
  EXPECT_TRUE(KCOSIntrospection::isKCOSClass(u"lab.Pump"));
  EXPECT_TRUE(KCOSIntrospection::isKCOSClassDerivedFrom(u"lab.Pump", u"lab.Device"));
  EXPECT_TRUE(KCOSIntrospection::hasMethod(u"lab.Pump", "start", isStatic) && !isStatic);
  EXPECT_EQ(shownValue(GetValueFromCurrentWorkspace(u"settings.interval")), "0.5");
}

}  // namespace
