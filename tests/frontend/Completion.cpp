// Completion in a world with one of everything: its cases, and without code; how what is typed fits names.

#include <gtest/gtest.h>

#include "tests/frontend/LineCases.h"
#include "tests/support/Table.h"
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
