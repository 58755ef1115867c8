// Every rule of explanations, in a world with one of everything.

#include "frontend/Explanation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>

#include "tests/frontend/LineCases.h"
#include "tests/support/Text.h"

namespace {

using frontend::CodePolicy;
using frontend::Explanation;
using frontend::Rule;

Explanation explain(frontend::Session& session, const LineCase& line, const frontend::Options& options) {
  return frontend::explain(session, line.text, line.cursor, wide(line.settings.at("name")), line.where(),
                           options);
}

std::string shownReasons(const Explanation& explanation) {
  std::string text;
  for (const frontend::Reason& reason : explanation.reasons)
    text += std::string(nameOf(reason.rule)) + "  " + shown(reason.detail) + "\n";
  return text;
}

TEST(Explanation, GivesTheExpectedReasonsAndEveryRule) {
  CaseWorld world;
  std::set<Rule> seen;
  for (const LineCase& line : lineCases("explanation.txt")) {
    SCOPED_TRACE(line.place);
    const Explanation explanation = explain(world.session, line, line.options());
    EXPECT_EQ(shownReasons(explanation), line.rows());
    EXPECT_EQ(nameOf(explanation.outcome.status), line.status);
    EXPECT_EQ(explanation.isOffered, explanation.reasons.front().rule == Rule::Offered);
    for (const frontend::Reason& reason : explanation.reasons) seen.insert(reason.rule);
  }
  EXPECT_EQ(seen.size(), static_cast<std::size_t>(Rule::NotOfferedHere) + 1);
}

/// At the positions of the cases of completion, of each name that is offered with all relaxed, and of some that are not.
TEST(Explanation, AgreesWithCompletionInItsCases) {
  CaseWorld world;
  std::size_t offered = 0, asked = 0;
  for (const LineCase& line : lineCases("completion.txt")) {
    SCOPED_TRACE(line.place);
    frontend::Options options = line.options();
    const auto complete = [&](const frontend::Options& with) {
      return frontend::complete(world.session, line.text, line.cursor, line.where(), with);
    };
    const auto answered = complete(options).candidates;
    options.hidden = true;
    options.limit = 1000;
    std::vector<std::u16string> names{u"Valve", u"pump", u"plus", u"nowhere", u""};
    for (const auto& candidate : complete(options).candidates) names.push_back(candidate.label);
    for (const std::u16string& label : names) {
      const bool isOffered = std::ranges::count(answered, label, &frontend::Candidate::label) > 0;
      const Explanation explanation =
          frontend::explain(world.session, line.text, line.cursor, label, line.where(), line.options());
      EXPECT_EQ(explanation.isOffered, isOffered) << shown(label) << "\n" << shownReasons(explanation);
      offered += isOffered ? 1 : 0;
      ++asked;
    }
  }
  EXPECT_GT(offered, 250U);
  EXPECT_GT(asked - offered, 300U);
}

/// And no completion does.
TEST(Explanation, RunsNoCodeUnderThePolicyNever) {
  CaseWorld world;
  TrappedSession session(*world.host);
  std::size_t asked = 0;
  for (const char* file : {"explanation.txt", "completion.txt"})
    for (const LineCase& line : lineCases(file)) {
      frontend::Options options = line.options();
      options.policy = CodePolicy::Never;
      const auto completion = frontend::complete(session, line.text, line.cursor, line.where(), options);
      EXPECT_NE(completion.outcome.status, frontend::Status::Failed) << line.place;
      for (const char16_t* name : {u"alpha", u"Valve", u"plus", u"reach", u"Flow"}) {
        EXPECT_FALSE(
            frontend::explain(session, line.text, line.cursor, name, line.where(), options).reasons.empty());
        ++asked;
      }
    }
  EXPECT_GT(asked, 700U);
}

TEST(Explanation, SaysThatItWasStoppedAndForgetsIt) {
  CaseWorld world;
  frontend::Options options;
  options.deadline = std::chrono::steady_clock::now() - std::chrono::seconds(1);
  const Explanation explanation = frontend::explain(world.session, u"pump.", 5, u"Valve", {}, options);
  EXPECT_EQ(explanation.outcome.status, frontend::Status::TimedOut);
  EXPECT_FALSE(explanation.isOffered);
  EXPECT_EQ(shownReasons(explanation), "not-offered-here  the deadline has passed\n");
  EXPECT_EQ(frontend::explain(world.session, u"pump.", 5, u"Valve", {}).outcome.status,
            frontend::Status::Complete);
}

}  // namespace
