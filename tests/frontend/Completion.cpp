// Completion in a world with one of everything: its cases, and without code; how what is typed fits names.

#include <gtest/gtest.h>

#include "host/Members.h"
#include "tests/frontend/LineCases.h"
#include "tests/support/Growth.h"
#include "tests/support/Table.h"
#include "tests/support/World.h"
#include "tools/render/FrontEnd.h"
#include "tools/render/Text.h"

namespace {

using frontend::Completion;

/// Columns that are empty are left out.
std::string rowOf(const frontend::Candidate& candidate) {
  const std::string details = tools::detailsOf(candidate);
  const std::string row = tools::printable(candidate.label) + "  " + tools::kindOf(candidate);
  return details.empty() ? row : row + "  " + details;
}

std::vector<std::string> shownRows(const Completion& completion) {
  std::vector<std::string> rows;
  for (const frontend::Candidate& candidate : completion.candidates) rows.push_back(rowOf(candidate));
  return rows;
}

TEST(Completion, OffersWhatItsCasesSay) {
  CaseWorld world;
  const auto cases = lineCases("completion.txt");
  EXPECT_GT(cases.size(), 90U);
  for (const LineCase& line : cases) {
    SCOPED_TRACE(line.place);
    const Completion completion =
        complete(world.session, line.text, line.cursor, line.where(), line.options());
    EXPECT_EQ(shownRows(completion), line.expected);
    EXPECT_EQ(nameOf(completion.outcome.status), line.status);
    EXPECT_EQ(completion.outcome.reason.empty(), line.status == "complete");
    EXPECT_LE(completion.begin, completion.end);
    EXPECT_EQ(completion.end, line.cursor);
  }
}

/// Without a session there are no variables, but classes and what they offer.
TEST(Completion, AnswersWithoutASessionWhatTheLibraryAloneCan) {
  CaseWorld world;
  frontend::NoSession nothing;
  const auto count = [&](const std::u16string& text) {
    return frontend::complete(nothing, text, text.size(), {}).total;
  };
  EXPECT_EQ(count(u"pump."), 0U);
  EXPECT_GE(count(u"lab.Pump."), 3U);
  EXPECT_GE(count(u"lab."), 5U);
}

/// A chain of classes, each with a property of its own and one that all of them have, and an object of the last one.
std::string chainOf(std::size_t depth) {
  std::string classes = R"({"name": "C0", "properties": ["all", "p0"], "methods": ["m0"]})";
  for (std::size_t at = 1; at < depth; ++at) {
    const std::string number = std::to_string(at);
    classes += R"(, {"name": "C)" + number + R"(", "superclasses": ["C)" + std::to_string(at - 1) +
               R"("], "properties": ["all", "p)" + number + R"("], "methods": ["m)" + number + R"("]})";
  }
  return R"({"format": 1, "classes": [)" + classes +
         R"(], "workspace": [{"name": "x", "value": {"object": "C)" + std::to_string(depth - 1) + R"("}}]})";
}

TEST(Completion, OfADeepClassCostsWhatItsMembersCost) {
  const auto completing = [](std::size_t depth) {
    return [depth, world = std::make_shared<World>(chainOf(depth))] {
      const embedded::Activation active(world->host);
      tools::HostSession session(world->host);
      const Completion completion = frontend::complete(session, u"x.", 2, {});
      EXPECT_EQ(completion.total, 2 * depth + 1);
      EXPECT_EQ(completion.candidates[1].declaringClass, u"C1");
      EXPECT_EQ(completion.outcome.status, frontend::Status::Limited);
    };
  };
  EXPECT_TRUE(isLinear(completing(100), completing(800)));
}

/// What it says of a member is said of the one that the library lists, not of another one of its name.
TEST(Completion, DescribesTheMemberThatIsListed) {
  World world(R"({"format": 1, "classes": [
    {"name": "Base", "properties": ["p"], "methods": [{"name": "m", "access": "private"}]},
    {"name": "Broken", "superclasses": ["Base"], "broken": true, "properties": [{"name": "p", "constant": true}]},
    {"name": "Enumeration", "superclasses": ["Base"], "enumeration": true, "properties": [{"name": "p", "constant": true}]},
    {"name": "OfBroken", "superclasses": ["Broken"]},
    {"name": "OfEnumeration", "superclasses": ["Enumeration"]},
    {"name": "Late", "superclasses": ["Base"], "order": "inherited-first", "methods": ["m"]}]})");
  tools::HostSession session(world.host);
  for (const char16_t* text : {u"OfBroken().p", u"OfEnumeration().p"}) {
    const Completion completion = frontend::complete(session, text, std::u16string(text).size(), {});
    ASSERT_EQ(completion.total, 1U);
    EXPECT_EQ(completion.candidates[0].declaringClass, u"Base");
    EXPECT_FALSE(completion.candidates[0].isConstant);
  }
  const Completion completion = frontend::complete(session, u"Late().m", 8, {});
  ASSERT_EQ(completion.total, 1U);
  EXPECT_EQ(completion.candidates[0].declaringClass, u"Late");
  EXPECT_EQ(completion.candidates[0].access, kcos::PublicAccess);
}

TEST(Match, IsTheBestOfItsKinds) {
  std::size_t humps = 0;
  for (const auto& [typed, name, match] :
       rowsOf<3>("tests/frontend/tables.rows", "Match.IsTheBestOfItsKinds")) {
    EXPECT_EQ(nameOf(frontend::matchOf(wide(typed), wide(name))), match) << typed << " " << name;
    humps += match == "humps" ? 1 : 0;
  }
  EXPECT_GT(humps, 9U);
}

/// As many ways as there may be to read what was typed, they are not all tried.
TEST(Match, OfAMillionWaysIsQuick) {
  std::u16string name, typed;
  for (int humps = 0; humps < 200; ++humps) name += u"aa_";
  typed.assign(30, u'a');
  EXPECT_EQ(frontend::matchOf(typed, name), frontend::Match::Humps);
  EXPECT_EQ(frontend::matchOf(typed + u"b", name), frontend::Match::None);
}

}  // namespace
