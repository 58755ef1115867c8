#include <contextdata/KCOSContextData/CompletionTables.h>
#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "tests/support/Table.h"

namespace {

using namespace KCOSContextData;

struct Table {
  std::set<std::u16string> (*names)();
  std::size_t count;
  const char* entries;
};

const Table tables[] = {
    {getKCOSMethodsExcludeSet, 29,
     "plus uplus minus uminus mtimes times mrdivide rdivide mldivide ldivide mpower power ctranspose "
     "transpose "
     "lt le gt ge eq ne and or not colon subsref subsasgn subsindex horzcat vertcat"},
    {getVX2KorvalNamespacesExcludeSet, 3, "ui uitools graphics"},
    {getVX2NamespacesExcludeSet, 9,
     "korval.ui korval.uitools korval.graphics chartMixin vx2 vx2sample vx2utils internal specgraphTwo"},
    {getNoDotMethodClassesExcludeSet, 19,
     "table timetable collection timetableCollection tall "
     "korval.mixin.internal.indexing.DisallowCompletionOfDotMethodNames korval.tabular.CustomProperties "
     "korval.tabular.TableProperties korval.tabular.TimetableProperties "
     "korval.tabular.TallTimetableProperties "
     "distributed codistributed groupedData dataset korval.io.KorFile categorical datetime duration "
     "calendarDuration"}};

TEST(CompletionTables, HoldExactlyTheirEntriesAndAreCopies) {
  for (const Table& row : tables) {
    std::set<std::u16string> expected;
    std::istringstream entries(row.entries);
    for (std::string entry; entries >> entry;) expected.insert(wide(entry));
    std::set<std::u16string> names = row.names();
    EXPECT_EQ(names, expected);
    EXPECT_EQ(names.size(), row.count);
    names.erase(names.begin());
    names.insert(u"Table");
    EXPECT_EQ(row.names(), expected);
  }
}

TEST(CompletionTables, TheAttributesAreOneSharedList) {
  EXPECT_EQ(getAttributesToTreatAsHavingCustomGetters(), std::vector<std::string>{"QRDGetSet"});
  EXPECT_EQ(&getAttributesToTreatAsHavingCustomGetters(), &getAttributesToTreatAsHavingCustomGetters());
}

}  // namespace
