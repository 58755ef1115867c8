// The front end with every call of the host failing, in every way: it never says that an answer is all there is, or that
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
#include "tests/support/Text.h"
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

/// A host and what is asked of it.
struct World {
  explicit World(std::unique_ptr<embedded::Host> made) : host(std::move(made)), active(*host) {}
  std::unique_ptr<embedded::Host> host;
  embedded::Activation active;
  tools::HostSession session{*host};
};

struct Question {
  std::string what;
  std::function<Answered(World&)> ask;
};

Question completion(const LineCase& line) {
  return {"complete " + shown(line.text), [line](World& world) {
            frontend::Options options = line.options();
            options.limit = 1000;
            const auto answer =
                frontend::complete(world.session, line.text, line.cursor, line.where(), options);
            Answered answered{tools::textOf(answer), answer.outcome.status};
            for (const auto& candidate : answer.candidates)
              // Values are written otherwise when it cannot be told that their class is an enumeration.
              if (candidate.kind != frontend::Kind::Value) answered.names.insert(candidate.label);
            return answered;
          }};
}

Question explanation(const LineCase& line, const std::u16string& name) {
  return {"explain " + shown(line.text) + " " + shown(name), [=](World& world) {
            const auto answer =
                frontend::explain(world.session, line.text, line.cursor, name, line.where(), line.options());
            EXPECT_FALSE(answer.reasons.empty());
            return Answered{tools::textOf(answer), answer.outcome.status};
          }};
}

Question hover(const LineCase& line) {
  return {"hover " + shown(line.text), [line](World& world) {
            const auto answer =
                frontend::describe(world.session, line.text, line.cursor, line.where(), line.options());
            std::string rows = tools::kindOf(answer.subject) + " " + tools::detailsOf(answer.subject);
            for (const auto* texts : {&answer.superclasses, &answer.possibleValues, &answer.validators})
              for (const std::u16string& text : *texts) rows += ", " + shown(text);
            if (answer.signature) rows += shown(answer.signature->text());
            return Answered{answer.isUnknown ? "unknown" : rows, answer.outcome.status};
          }};
}

Question signature(const LineCase& line) {
  return {"signature " + shown(line.text), [line](World& world) {
            const auto answer =
                frontend::signatureHelp(world.session, line.text, line.cursor, line.where(), line.options());
            return Answered{answer.signature ? shown(answer.signature->text()) : "", answer.outcome.status};
          }};
}

/// A description is no request: whoever asks for it looks at the host's record, as the command does.
Question description(const std::string& name) {
  return {"describe " + name, [name](World& world) {
            world.host->clearFailure();
            world.host->clearInterrupt();
            Answered answered;
            try {
              const auto id = KCOSContextData::ResolvedClassID::fromKnownResolvedClassID(name);
              answered.rows = tools::textOf(frontend::describeClass(id, {kcos::PublicAccess}, false));
            } catch (...) {
              answered.status = Status::Failed;
            }
            if (world.host->failure()) answered.status = Status::Failed;
            const auto& failure = world.host->failure();
            if (world.host->interruptRequested() || (failure && failure->isInterrupt))
              answered.status = Status::Interrupted;
            world.host->clearInterrupt();
            return answered;
          }};
}

/// One way in which a call of the host fails, and how a request must end then.
struct Failure {
  const char* name;
  std::function<void(embedded::Host&)> raise;
  Status status;
  bool andLater = false;
};

const Failure failures[] = {
    {"error", [](embedded::Host&) { throw foundation::core::except::Exception("a:b", "no"); },
     Status::Failed},
    {"std", [](embedded::Host&) { throw std::runtime_error("no"); }, Status::Failed},
    {"foreign, and from then on", [](embedded::Host&) { throw 1; }, Status::Failed, true},
    {"an interrupt of its own", [](embedded::Host&) { throw Tamsix::System::InterruptException(); },
     Status::Interrupted},
    {"interrupt",
     [](embedded::Host& host) {
       host.requestInterrupt();
       throw Tamsix::System::InterruptException();
     },
     Status::Interrupted}};

std::size_t failCalls(World& world, const Question& question, const Failure& failure, std::uint64_t first,
                      std::uint64_t stride) {
  SCOPED_TRACE(question.what + ", " + failure.name);
  const Answered clean = question.ask(world);
  std::size_t count = 0;
  for (std::uint64_t call = first;; call += stride, ++count) {
    world.host->setFault({"", call, failure.andLater, [&] { failure.raise(*world.host); }});
    const Answered faulty = question.ask(world);
    if (!world.host->clearFault()) return count;
    // A fault may come after the answer, when what was printed is collected.
    if (faulty.rows != clean.rows || faulty.status != clean.status) {
      EXPECT_EQ(nameOf(faulty.status), std::string(nameOf(failure.status))) << "at call " << call << ":\n"
                                                                            << faulty.rows;
    }
    for (const std::u16string& name : faulty.names)
      EXPECT_TRUE(clean.names.contains(name)) << "at call " << call << ": " << shown(name);
    const Answered again = question.ask(world);
    EXPECT_EQ(again.rows, clean.rows) << "after call " << call;
    EXPECT_EQ(nameOf(again.status), std::string(nameOf(clean.status))) << "after call " << call;
  }
}

/// Each failure hits every fifth call, and begins elsewhere, so that together they hit all of them. Of questions with more
/// calls than that each hits about `most`.
std::size_t failSome(World& world, const std::vector<Question>& questions, std::uint64_t most) {
  std::size_t count = 0;
  for (const Question& question : questions) {
    const std::uint64_t before = world.host->callCount();
    question.ask(world);
    const std::uint64_t stride = std::max(std::size(failures), (world.host->callCount() - before) / most);
    std::uint64_t first = 1;
    for (const Failure& failure : failures) count += failCalls(world, question, failure, first++, stride);
  }
  return count;
}

LineCase lineOf(const std::u16string& text, const std::map<std::string, std::string>& settings = {}) {
  const std::size_t cursor = text.find(u'|');
  std::u16string whole = text;
  whole.erase(cursor, 1);
  return {.place = shown(text), .text = whole, .cursor = cursor, .settings = settings, .expected = {}};
}

/// So small that every call can be made to fail.
constexpr const char* smallWorld = R"({"format": 1,
  "classes": [{"name": "Base", "methods": [{"name": "inner", "access": "private"}]},
              {"name": "P", "superclasses": ["Base"], "properties": [{"name": "B", "type": "E"}],
               "methods": [{"name": "make", "static": true}]},
              {"name": "E", "enumeration": true, "members": ["On"]}],
  "functions": [{"name": "f", "arguments": {"inputs": [{"name": "x", "class": "P"}]}}],
  "workspace": [{"name": "p", "value": {"object": "P"}}]})";

TEST(Faults, OfEveryCallAreTold) {
  World world(std::make_unique<embedded::Host>(embedded::readSnapshotText(smallWorld, "small")));
  const LineCase member = lineOf(u"p.|");
  const std::size_t count = failSome(
      world,
      {completion(member), completion(lineOf(u"P.|")), completion(lineOf(u"p.B = |")),
       explanation(member, u"Nope"), explanation(member, u"make"), explanation(lineOf(u"|(p)"), u"Nope"),
       hover(lineOf(u"p.B|")), hover(lineOf(u"P|")), hover(lineOf(u"p.inner|")), signature(lineOf(u"f(|")),
       signature(lineOf(u"go(p, |")), description("P")},
      60);
  EXPECT_GT(count, 1000U);
}

/// Too many calls for all of them to fail.
TEST(Faults, OfTheCasesAreTold) {
  World world(embedded::Host::load(sourceFile("tests/cases/world.json")));
  std::vector<Question> questions;
  std::size_t number = 0;
  for (const LineCase& line : lineCases("faults.txt")) {
    questions.push_back(completion(line));
    const Question others[] = {hover(line), signature(line), explanation(line, u"Valve")};
    questions.push_back(others[number++ % std::size(others)]);
  }
  EXPECT_GT(failSome(world, questions, 12), 800U);
}

TEST(Faults, OfTheExampleAreTold) {
  World world(embedded::Host::load(sourceFile("examples/lab.json")));
  const LineCase member = lineOf(u"pump.|");
  EXPECT_GT(failSome(world,
                     {explanation(member, u"Nope"), explanation(member, u"Limits"),
                      hover(lineOf(u"pump.Mode|")), description("lab.LoggingPump")},
                     12),
            200U);
}

}  // namespace
