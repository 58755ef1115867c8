// A host may answer more oddly than the one that ships ever does: null, nothing, another kind, another status.

#include <contextdata/KCOSContextData.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <stdexcept>

#include "host/Dispatcher.h"
#include "host/Files.h"
#include "host/Interpreter.h"
#include "tests/faults/FaultLoop.h"
#include "tests/support/State.h"
#include "tests/support/Table.h"
#include "tests/support/World.h"

namespace {

using namespace KCOSContextData;
using kcos::internal::makeInterned;
using Questions = std::map<std::string, faults::Question>;
/// An odd answer for each type of answer that has it.
using Answers = std::vector<std::shared_ptr<const embedded::PlannedAnswer>>;

template <class... Types>
Answers values(Types... answers) {
  return {embedded::answering([answer = answers]() -> Types { return answer; })...};
}
template <class... Types>
Answers nothingOf() {
  return {embedded::answering([] { return Types(); })...};
}

/// Names that are none of a class: a null one, and one that another class has.
kcos::COSEnumeration<kcos::COSInternedName> oddNames() {
  struct Pass final : kcos::COSEnumerator<kcos::COSInternedName> {
    int next = 0;
    bool hasMoreElements() override { return next < 2; }
    kcos::COSInternedName nextElement() override {
      return next++ == 0 ? kcos::COSInternedName() : makeInterned("Pumpe");
    }
  };
  return kcos::COSEnumeration<kcos::COSInternedName>(std::make_unique<Pass>());
}

/// The words of the table.
std::map<std::string, Answers> oddAnswers() {
  static const double odd[] = {std::numeric_limits<double>::quiet_NaN(), -1};
  std::map<std::string, Answers> all{
      {"nothing", nothingOf<kcos::COSClass*, kcos::COSEnumInfo*, kcos::COSNamespace*, kcos::COSInterfacePtr,
                            kcos::COSInternedName, const kcos::COSConversion*, const kcos::COSValidationType*,
                            kcos::COSIterator, kcos::COSEnumeration<kcos::COSInternedName>,
                            kcos::COSEnumeration<const kcos::COSPossibleValue*>,
                            kcos::COSEnumeration<kcos::COSValidationDimension>, kxArray_tag*, const char*,
                            std::string, std::optional<std::u16string>, const Kfh_KORVAL_fn*,
                            IInterpreterBridge*, const KclassIdentifier*, fl::filesystem::file_status>()},
      {"done", {embedded::answering([] {})}},
      {"yes", values(true)},
      {"no", values(false)},
      {"empty name", values("")},
      {"NaN", values(&odd[0])},
      {"-1", values(-1, &odd[1])},
      {"a null name, Pumpe", {embedded::answering(oddNames)}},
      {"7 after all", {embedded::answering([](int) { return 7; })}}};
  for (const int number : {0, 2, 5, 7}) all[std::to_string(number)] = values(number);
  for (const std::string name : {"lab.Device", "lab.Mode"})
    all[name] = {embedded::answering(
        [name](kcos::COSClass*) { return kcos::COSClass::getClass(makeInterned(name)); })};
  return all;
}

ResolvedClassID idOf(const std::string& name) { return ResolvedClassID::fromKnownResolvedClassID(name); }

std::string shownValue(const kxArray_tag* value) {
  return value != nullptr ? shown(KCOSIntrospection::getClassName(value)) : "nothing";
}
std::string valueOf(const std::string& expression) {
  return shownValue(GetValueFromCurrentWorkspace(wide(expression)).get());
}
std::string evaluation(const std::string& expression) {
  kxArray_tag* slot = nullptr;
  const bool succeeded = EvalcExpSuccessful(wide(expression), 1, &slot, true);
  return shown(succeeded) + " " + shownValue(makeSharedPtr(slot).get());
}
std::string property(const std::string& name) {
  for (const PropertyInfo& found : ClassInfo(idOf("info.Rich")).getProperties({}))
    if (shown(found.name) == name)
      return std::to_string(found.possibleValuesKind) + ": " + shownList(found.possibleValues) + "; " +
             shown(found.type) + "(" + shownList(found.sizeStrings) + ") " +
             shownList(found.validationFunctions) + (found.hasCustomGetter ? " getter" : "") +
             (found.optimizedPropertyFlag ? " flag" : "");
  return "no property";
}

/// Those of the fault loop, by operation and form, and what its questions do not tell apart.
Questions questions() {
  Questions all;
  for (const faults::Question& question : faults::allQuestions())
    all[question.operation + (question.form.empty() ? "" : " ") + question.form] = question;
  const auto add = [&](const std::string& word, const std::string& argument, auto ask) {
    all[word + " " + argument] = faults::asks(word, argument, [=] { return ask(argument); });
  };
  for (const char* name : {"finite", "fast", "typed"}) add("property", name, property);
  for (const char* expression : {"number(1)", "record.a", "pump.Flow", "far.host"})
    add("value", expression, valueOf);
  add("evaluation", "number(1)", evaluation);
  add("resolved", "Pump",
      [](auto name) { return ResolvedClassID(u"lab.tune", wide(name)).getComponentQualifiedName(); });
  add("legacy", "lab.Pump",
      [](auto name) { return textOf(ClassInfo(ResolvedClassID::fromLegacyString(name)).classId); });
  add("properties", "info.Child", [](auto name) { return namesOf(ClassInfo(idOf(name)).getProperties({})); });
  add("attributes", "info.Child",
      [](auto name) { return shownList(ClassInfo(idOf(name)).getAttributes(false).attributeList1); });
  add("precedence", "ws.First", [](auto name) { return GetClassPrecedence(wide(name), u"ws.Second") + 0UL; });
  return all;
}

/// Plans the one of the answers that has the operation's type.
void plan(embedded::Host& host, const std::string& operation, const std::string& argument,
          const Answers& answers) {
  for (const auto& answer : answers) try {
      return host.setFault({operation, 1, true, {}, argument, answer});
    } catch (const std::invalid_argument&) {
    }
  ADD_FAILURE() << "no such answer of " << operation;
}

/// What is returned, the names that are listed, and "!" for the flag; or what is thrown.
std::string answerTo(const faults::Question& question) {
  faults::Answer answer;
  const std::string thrown = thrownBy([&] { question.ask(answer); });
  if (!thrown.empty()) return thrown;
  std::string all = answer.result;
  if (const std::string names = shownList(answer.names); !names.empty())
    all += (all.empty() ? "" : " ") + names;
  all += answer.flag ? " !" : "";
  return all.substr(0, all.find_last_not_of(' ') + 1);
}

TEST(OddAnswers, AreMetByTheRulesOfEachQuery) {
  const auto host = faults::makeWorld();
  const embedded::Activation active(*host);
  faults::activeWorld() = host.get();
  const auto asked = questions();
  const auto words = oddAnswers();
  for (const auto& [rule, operation, argument, odd, question, answer] :
       rowsOf<6>("tests/faults/answers.rows")) {
    SCOPED_TRACE(rule + ": " + operation);
    ASSERT_TRUE(asked.contains(question) && words.contains(odd)) << question << ", " << odd;
    const std::string clean = answerTo(asked.at(question));
    const bool isClean = answer == "as ever" || answer == "not asked";
    const State state(*host);
    plan(*host, operation, argument, words.at(odd));
    EXPECT_EQ(answerTo(asked.at(question)), isClean ? clean : answer);
    EXPECT_EQ(host->clearFault(), answer != "not asked") << "does the query ask for it?";
    EXPECT_TRUE(isClean || clean != answer) << "as without the plan";
    state.expectUnchanged();
    EXPECT_EQ(answerTo(asked.at(question)), clean);
  }
}

}  // namespace
