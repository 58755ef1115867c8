#include <contextdata/KCOSContextData/CompletionTables.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "tests/support/Table.h"

namespace {

using namespace KCOSContextData;

TEST(CompletionTables, HoldExactlyTheirEntriesAndAreCopies) {
  const std::map<std::string, std::set<std::u16string> (*)()> tables{
      {"getKCOSMethodsExcludeSet", getKCOSMethodsExcludeSet},
      {"getVX2KorvalNamespacesExcludeSet", getVX2KorvalNamespacesExcludeSet},
      {"getVX2NamespacesExcludeSet", getVX2NamespacesExcludeSet},
      {"getNoDotMethodClassesExcludeSet", getNoDotMethodClassesExcludeSet}};
  for (const auto& [name, count, listed] : rowsOf<3>("tests/names/tables.rows", "CompletionTables")) {
    std::set<std::u16string> expected;
    std::istringstream entries(listed);
    for (std::string entry; entries >> entry;) expected.insert(wide(entry));
    std::set<std::u16string> names = tables.at(name)();
    EXPECT_EQ(names, expected);
    EXPECT_EQ(std::to_string(names.size()), count);
    names.erase(names.begin());
    names.insert(u"Table");
    EXPECT_EQ(tables.at(name)(), expected);
  }
}

TEST(CompletionTables, TheAttributesAreOneSharedList) {
  EXPECT_EQ(getAttributesToTreatAsHavingCustomGetters(), std::vector<std::string>{"QRDGetSet"});
  EXPECT_EQ(&getAttributesToTreatAsHavingCustomGetters(), &getAttributesToTreatAsHavingCustomGetters());
}

}  // namespace
