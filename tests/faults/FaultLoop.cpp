#include "tests/faults/FaultLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <utility>

#include "host/Exceptions.h"
#include "tests/support/State.h"
#include "tests/support/Table.h"
#include "tests/support/World.h"

namespace faults {

namespace {

using foundation::core::except::IException;
using Tamsix::System::InterruptException;

class DerivedInterrupt : public InterruptException {
 public:
  std::unique_ptr<IException> clone() const override { return std::make_unique<DerivedInterrupt>(*this); }
  [[noreturn]] void rethrow() const override { throw DerivedInterrupt(*this); }
};

struct Failure {
  const char* name;
  bool isInterrupt;
  std::function<void()> raise;
};

const std::vector<Failure>& failures() {
  static const std::vector<Failure> all{
      {"interrupt", true, [] { throw InterruptException(); }},
      {"derived interrupt", true, [] { throw DerivedInterrupt(); }},
      {"host exception", false,
       [] { throw foundation::core::except::Exception("test:fault", "made to fail"); }},
      {"std::exception", false, [] { throw std::runtime_error("made to fail"); }},
      {"int", false, [] { throw 42; }}};
  return all;
}

/// What left the question: the name of a failure when it is that failure, unchanged and of the same dynamic type.
std::string askAndCatch(const Question& question, Answer& answer) {
  try {
    question.ask(answer);
    return "";
  } catch (const InterruptException& caught) {
    if (typeid(caught) == typeid(InterruptException)) return "interrupt";
    return typeid(caught) == typeid(DerivedInterrupt) ? "derived interrupt" : "another interrupt";
  } catch (const foundation::core::except::Exception& caught) {
    return caught.messageId() == "test:fault" ? "host exception" : caught.messageId();
  } catch (const std::exception& caught) {
    const bool isOurs =
        typeid(caught) == typeid(std::runtime_error) && caught.what() == std::string("made to fail");
    return isOurs ? "std::exception" : caught.what();
  } catch (int caught) {
    return caught == 42 ? "int" : "another int";
  } catch (...) {
    return "something else";
  }
}

Answer untouched() { return {"", {u"kept"}, false}; }

struct FaultPoint {
  std::string hostOperation;
  std::size_t call;
  /// Names appended, and whether the flag was set, when the call is reached.
  std::size_t appended;
  bool flagSet;
};

std::vector<FaultPoint> faultPoints(const Question& question, const std::vector<embedded::Call>& log) {
  const std::vector<std::string> names = embedded::Host::faultyOperations();
  const std::set<std::string> faulty(names.begin(), names.end());
  std::map<std::string, std::size_t> counts;
  std::vector<FaultPoint> points;
  for (const embedded::Call& call : log) {
    if (!faulty.contains(call.operation)) continue;
    const std::size_t appended = question.appendsAfter.empty() ? 0 : counts[question.appendsAfter];
    const bool flagSet = !question.setsFlagAfter.empty() && counts[question.setsFlagAfter] > 0;
    points.push_back({call.operation, ++counts[call.operation], appended, flagSet});
  }
  return points;
}

const Reaction* reactionOf(const Question& question, const FaultPoint& point) {
  const Reaction* general = nullptr;
  const Reaction* ofOperation = nullptr;
  for (const Rule& rule : question.rules) {
    if (rule.hostOperation == "*") general = &rule.reaction;
    if (rule.hostOperation != point.hostOperation) continue;
    if (rule.call == point.call) return &rule.reaction;
    if (rule.call == 0) ofOperation = &rule.reaction;
  }
  return ofOperation != nullptr ? ofOperation : general;
}

/// Nothing when the text names none.
std::optional<Reaction> reactionNamed(const std::string& text) {
  if (text == "propagates") return Reaction();
  if (text == "ignored") return Reaction{"", "", Reaction::Ignored};
  if (text == "open") return Reaction{"", "", Reaction::Open};
  const std::size_t colon = text.find(':');
  const std::string kind = text.substr(0, colon), answer = text.substr(std::min(text.size(), colon + 2));
  if (kind == "swallowed") return Reaction{answer, answer};
  if (kind == "but interrupt") return Reaction{{}, answer};
  return {};
}

void expectSame(const Answer& answer, const Answer& expected) {
  EXPECT_EQ(answer.result, expected.result);
  EXPECT_EQ(shownList(answer.names), shownList(expected.names));
  EXPECT_EQ(answer.flag, expected.flag);
}

void expectCleanRepeat(const Question& question, const Answer& clean) {
  Answer again = untouched();
  EXPECT_EQ(askAndCatch(question, again), "") << "a clean question afterwards";
  expectSame(again, clean);
}

/// The answer that the row states for a fault at that point.
Answer statedAnswer(const Answer& clean, const FaultPoint& point, const Outcome& outcome) {
  Answer stated = untouched();
  stated.result = outcome.value_or("");
  stated.names.assign(clean.names.begin(),
                      clean.names.begin() + std::min(clean.names.size(), 1 + point.appended));
  if (point.flagSet) stated.flag = clean.flag;
  return stated;
}

void failOnce(embedded::Host& host, const Question& question, const Answer& clean, const FaultPoint& point,
              const Failure& failure, const Reaction& reaction) {
  if (reaction.effect == Reaction::Open) return;
  const Outcome& outcome = failure.isInterrupt ? reaction.interrupt : reaction.other;
  Answer answer = untouched();
  host.setFault({point.hostOperation, point.call, false, failure.raise});
  const std::string left = askAndCatch(question, answer);
  EXPECT_TRUE(host.clearFault()) << "the fault did not happen";
  EXPECT_EQ(left, outcome ? "" : failure.name);
  expectSame(answer, reaction.effect == Reaction::Ignored ? clean : statedAnswer(clean, point, outcome));
}

/// From that call on every call fails: the answer is open, but nothing may crash, leak or stay broken.
void failFromThereOn(embedded::Host& host, const Question& question, const FaultPoint& point,
                     const Failure& failure) {
  Answer answer = untouched();
  host.setFault({point.hostOperation, point.call, true, failure.raise});
  askAndCatch(question, answer);
  EXPECT_TRUE(host.clearFault()) << "the fault did not happen";
}

}  // namespace

std::size_t failEveryCall(embedded::Host& host, const Question& question) {
  Answer clean = untouched();
  host.startLog();
  EXPECT_EQ(askAndCatch(question, clean), "");
  const std::vector<FaultPoint> points = faultPoints(question, host.takeLog());
  const State state(host);
  expectCleanRepeat(question, clean);
  state.expectUnchanged();
  std::size_t happened = 0;
  for (const FaultPoint& point : points) {
    const Reaction* reaction = reactionOf(question, point);
    if (reaction == nullptr) {
      ADD_FAILURE() << question.operation << " (" << question.form << ") has no rule for "
                    << point.hostOperation;
      continue;
    }
    for (const Failure& failure : failures()) {
      SCOPED_TRACE(question.operation + " (" + question.form + "), " + point.hostOperation + " call " +
                   std::to_string(point.call) + ", " + failure.name);
      const State state(host, point.hostOperation);
      failOnce(host, question, clean, point, failure, *reaction);
      state.expectUnchanged();
      failFromThereOn(host, question, point, failure);
      state.expectUnchanged();
      expectCleanRepeat(question, clean);
      state.expectUnchanged();
      ++happened;
    }
  }
  return happened;
}

std::vector<Rule> rulesOf(const std::string& operation, const std::string& form) {
  static const auto stated = rowsOf<2>("tests/faults/rules.rows", "questions");
  const std::string name = operation + (form.empty() ? "" : " ") + form;
  const auto row = std::ranges::find(stated, name, [](const auto& cells) { return cells[0]; });
  if (row == stated.end()) return {{"*", Reaction()}};
  if ((*row)[1] == "no calls") return {};
  if (const auto reaction = reactionNamed((*row)[1])) return {{"*", *reaction}};
  const auto rows = rowsOf("tests/faults/rules.rows", (*row)[1]);
  std::vector<Rule> rules;
  for (std::size_t at = 1; at < rows.size(); ++at)
    for (std::size_t column = 1; column < rows[0].size(); ++column) {
      std::istringstream calls(rows[at].at(column));
      for (std::string call; calls >> call;)
        rules.push_back(
            {rows[at][0], reactionNamed(rows[0][column]).value(), call == "all" ? 0 : std::stoul(call)});
    }
  return rules;
}

Questions joined(std::initializer_list<Questions> parts) {
  Questions all;
  for (const Questions& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Questions allQuestions() {
  return joined({classSystemQuestions(), classInfoQuestions(), workspaceQuestions()});
}

std::unique_ptr<embedded::Host> makeWorld() {
  return embedded::Host::load(sourceFile("tests/faults/world.json"));
}

embedded::Host*& activeWorld() {
  static embedded::Host* world = nullptr;
  return world;
}

boost::intrusive_ptr<kxArray_tag> variable(const std::string& name) { return activeWorld()->variable(name); }

}  // namespace faults
