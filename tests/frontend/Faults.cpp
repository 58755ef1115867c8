// The front end with calls of the host failing, in every way: it never says that an answer is all there is, or that
// nobody stopped it, when it is not so; and the next answer is clean.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <stdexcept>

#include "frontend/ClassDescription.h"
#include "frontend/Explanation.h"
#include "frontend/Hover.h"
#include "host/Exceptions.h"
#include "tests/frontend/LineCases.h"
#include "tests/support/Table.h"
#include "tests/support/World.h"
#include "tools/render/ClassDescription.h"
#include "tools/render/FrontEnd.h"

namespace {

using frontend::Status;

struct Answered {
  std::string rows;
  Status status = Status::Complete;
  /// What of it must be part of the clean answer.
  std::set<std::u16string> names = {};
};

Answered completion(CaseWorld& world, const LineCase& line) {
  frontend::Options options = line.options();
  options.limit = 1000;
  const auto answer = complete(world.session, line.text, line.cursor, line.where(), options);
  Answered answered{tools::textOf(answer), answer.outcome.status};
  for (const auto& candidate : answer.candidates)
    // Values are written otherwise when it cannot be told that their class is an enumeration.
    if (candidate.kind != frontend::Kind::Value) answered.names.insert(candidate.label);
  return answered;
}

Answered explanation(CaseWorld& world, const LineCase& line) {
  const auto answer = explain(world.session, line.text, line.cursor, wide(line.settings.at("name")),
                              line.where(), line.options());
  EXPECT_FALSE(answer.reasons.empty());
  return {tools::textOf(answer), answer.outcome.status};
}

Answered hover(CaseWorld& world, const LineCase& line) {
  const auto answer = describe(world.session, line.text, line.cursor, line.where(), line.options());
  return {shownHover(answer), answer.outcome.status};
}

Answered signature(CaseWorld& world, const LineCase& line) {
  const auto answer = signatureHelp(world.session, line.text, line.cursor, line.where(), line.options());
  return {answer.signature ? shown(answer.signature->text()) : "", answer.outcome.status};
}

/// A description is no request: whoever asks for it looks at the host's record, as the command does.
Answered description(CaseWorld& world, const LineCase& line) {
  world.host->clearFailure();
  world.host->clearInterrupt();
  Answered answered;
  try {
    const auto id = KCOSContextData::ResolvedClassID::fromKnownResolvedClassID(shown(line.text));
    answered.rows = tools::textOf(frontend::describeClass(id, {kcos::PublicAccess}, false));
  } catch (...) {
    answered.status = Status::Failed;
  }
  const auto& failure = world.host->failure();
  if (failure) answered.status = Status::Failed;
  if (world.host->interruptRequested() || (failure && failure->isInterrupt))
    answered.status = Status::Interrupted;
  world.host->clearInterrupt();
  return answered;
}

struct Question {
  Answered (*ask)(CaseWorld&, const LineCase&);
  LineCase line;
};

/// Rows of what is asked, the text with its cursor, and the name that is asked for.
std::vector<Question> questionsOf(const std::string& table) {
  static const std::map<std::string, Answered (*)(CaseWorld&, const LineCase&)> asks{
      {"complete", completion},
      {"explain", explanation},
      {"hover", hover},
      {"signature", signature},
      {"describe", description}};
  std::vector<Question> questions;
  for (const auto& [what, marked, name] : tableOf<3>(table)) {
    const std::string before = marked.substr(0, marked.find('^')),
                      after = marked.substr(std::min(marked.size(), before.size() + 1));
    questions.push_back({asks.at(what),
                         {.place = what + " " + marked,
                          .text = wide(before + after),
                          .cursor = before.size(),
                          .settings = {{"name", name}},
                          .expected = {}}});
  }
  return questions;
}

/// One way in which a call of the host fails, and how a request must end then.
struct Failure {
  const char* name;
  std::function<void(embedded::Host&)> raise;
  Status status;
  bool andLater = false;
};

const Failure failures[] = {
    {"error", [](auto&) { throw foundation::core::except::Exception("a:b", "no"); }, Status::Failed},
    {"std", [](auto&) { throw std::runtime_error("no"); }, Status::Failed},
    {"foreign, and from then on", [](auto&) { throw 1; }, Status::Failed, true},
    {"own interrupt", [](auto&) { throw Tamsix::System::InterruptException(); }, Status::Interrupted},
    {"interrupt",
     [](embedded::Host& host) {
       host.requestInterrupt();
       throw Tamsix::System::InterruptException();
     },
     Status::Interrupted}};

std::size_t failCalls(CaseWorld& world, const Question& question, const Answered& clean,
                      const Failure& failure, std::uint64_t first, std::uint64_t stride) {
  SCOPED_TRACE(question.line.place + ", " + failure.name);
  const auto ask = [&] { return question.ask(world, question.line); };
  std::size_t count = 0;
  for (std::uint64_t call = first;; call += stride, ++count) {
    world.host->setFault({"", call, failure.andLater, [&] { failure.raise(*world.host); }});
    const Answered faulty = ask();
    if (!world.host->clearFault()) return count;
    // A fault may come after the answer, when what was printed is collected.
    if (faulty.rows != clean.rows || faulty.status != clean.status) {
      EXPECT_EQ(nameOf(faulty.status), std::string(nameOf(failure.status))) << "at call " << call << ":\n"
                                                                            << faulty.rows;
    }
    EXPECT_TRUE(std::ranges::includes(clean.names, faulty.names)) << "at call " << call << "\n"
                                                                  << faulty.rows;
    const Answered again = ask();
    EXPECT_EQ(again.rows + nameOf(again.status), clean.rows + nameOf(clean.status)) << "after call " << call;
  }
}

/// Each failure hits every fifth call, and begins elsewhere, so that together they hit all of them. Of questions with more
/// than `most` calls for each failure they hit a sample: about `most` each, spread over all calls.
std::size_t failSome(CaseWorld& world, const std::vector<Question>& questions, std::uint64_t most) {
  std::size_t count = 0;
  for (const Question& question : questions) {
    const std::uint64_t before = world.host->callCount();
    const Answered clean = question.ask(world, question.line);
    const std::uint64_t stride = std::max(std::size(failures), (world.host->callCount() - before) / most);
    std::uint64_t first = 1;
    for (const Failure& failure : failures)
      count += failCalls(world, question, clean, failure, first++, stride);
  }
  return count;
}

/// So small that every call of most questions can be made to fail.
constexpr const char* smallWorld = R"({"format": 1,
  "classes": [{"name": "Base", "methods": [{"name": "inner", "access": "private"}]},
              {"name": "P", "superclasses": ["Base"], "properties": [{"name": "B", "type": "E"}],
               "methods": [{"name": "make", "static": true}]},
              {"name": "E", "enumeration": true, "members": ["On"]}],
  "functions": [{"name": "f", "arguments": {"inputs": [{"name": "x", "class": "P"}]}}],
  "workspace": [{"name": "p", "value": {"object": "P"}}]})";

TEST(Faults, OfEveryCallAreTold) {
  CaseWorld world(std::make_unique<embedded::Host>(embedded::readSnapshotText(smallWorld, "small")));
  const auto questions = questionsOf(R"(
    complete | p.^ |; complete | P.^ |; complete | p.B = ^ |
    explain | p.^ | Nope; explain | p.^ | make; explain | ^(p) | Nope
    hover | p.B^ |; hover | P^ |; hover | p.inner^ |; signature | f(^ |; signature | go(p, ^ |; describe | P |)");
  EXPECT_GT(failSome(world, questions, 60), 1000U);
}

/// A sample of the calls: all of them would take minutes.
TEST(Faults, OfTheCasesAreTold) {
  CaseWorld world;
  std::vector<Question> questions;
  for (LineCase& line : lineCases("faults.txt")) {
    line.settings.emplace("name", "Valve");
    static constexpr decltype(Question::ask) others[] = {hover, signature, explanation};
    const auto other = others[questions.size() / 2 % std::size(others)];
    questions.insert(questions.end(), {{completion, line}, {other, line}});
  }
  EXPECT_GT(failSome(world, questions, 12), 800U);
}

/// A sample as well.
TEST(Faults, OfTheExampleAreTold) {
  CaseWorld world(embedded::Host::load(sourceFile("examples/lab.json")));
  const auto questions = questionsOf(
      "explain | pump.^ | Nope; explain | pump.^ | Limits; hover | pump.Mode^ |; describe | lab.LoggingPump "
      "|");
  EXPECT_GT(failSome(world, questions, 12), 200U);
}

}  // namespace
