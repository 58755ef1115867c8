// How what is typed fits names.

#include <gtest/gtest.h>

#include "frontend/Completion.h"
#include "tests/support/Table.h"

namespace {

TEST(Match, IsTheBestOfItsKinds) {
  std::size_t humps = 0;
  for (const auto& [typed, name, match] : tableOf<3>(R"(
    ; Flow|Flow|exact
    |Flow|prefix;                  Fl|Flow|prefix;              fl|Flow|prefix-ignoring-case
    FLOW|flow|prefix-ignoring-case; low|Flow|none;               Flower|Flow|none
    gCI|getClassInfo|humps;        gci|getClassInfo|humps;      getCI|getClassInfo|humps
    gi|getClassInfo|humps;         geI|getClassInfo|humps;      gla|getClassInfo|none
    ci|getClassInfo|none;          gCx|getClassInfo|none;       gic|getClassInfo|none
    gc|get_class|humps;            l2|level2|humps;             hx|HTTPXml|humps
    gclai|getClassInfo|humps;      gcl|get_inner_class|humps;   gtc|getClass|none;  gl|a|none)")) {
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
