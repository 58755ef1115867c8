// Which methods a class offers, to whom, at which position, and in which order.

#include <contextdata/KCOSIntrospection.h>
#include <gtest/gtest.h>

#include <boost/algorithm/string.hpp>

#include "tests/classinfo/Shown.h"
#include "tests/support/Table.h"

namespace {

using KCOSContextData::MethodInfo;
using Context = MethodInfo::GetContext;
using Options = MethodInfo::GetOptions;

struct MethodQueries : testing::Test {
  World world{worldFile("tests/classinfo/methods.json")};
};

TEST_F(MethodQueries, ByClassAndPosition) {
  for (const auto& row : rowsOf<4>("tests/classinfo/tables.rows", "MethodQueries.ByClassAndPosition")) {
    const Record record(row[0]);
    EXPECT_EQ(namesOf(record.getMethods({0}, Context::BeforeDot, nullptr)), row[1]) << row[0];
    EXPECT_EQ(namesOf(record.getMethods({0}, Context::AfterDot, nullptr)), row[2]) << row[0];
    EXPECT_EQ(namesOf(record.getMethods({0}, Context::Any, nullptr)), row[3]) << row[0];
    for (const int none : {0, 4, -1, 1000000})
      EXPECT_EQ(namesOf(record.getMethods({0}, static_cast<Context>(none), nullptr)), "") << row[0] << none;
  }
}

TEST_F(MethodQueries, ConstructorsOperatorsAndHiddenOnes) {
  for (const auto& [id, levels, accessing, more, expected] :
       rowsOf<5>("tests/classinfo/tables.rows", "MethodQueries.ConstructorsOperatorsAndHiddenOnes")) {
    const Record accessor(accessing);
    const Options options{.access = levelsOf(levels),
                          .accessingClass = accessing.empty() ? nullptr : &accessor,
                          .context = Context::Any,
                          .includeConstructors = more.find("constructors") != std::string::npos,
                          .includeOperatorOverloads = more.find("operators") != std::string::npos,
                          .includeHidden = more.find("hidden") != std::string::npos};
    EXPECT_EQ(namesOf(Record(id).getMethods(options)), expected) << id << " " << levels << " " << more;
  }
  EXPECT_EQ(namesOf(Record("Diamond").getMethodsOfSuperclasses({.access = {2, 2}, .context = Context::Any})),
            "");
}

TEST_F(MethodQueries, RecordsSayWhereAndWhetherStatic) {
  std::string all;
  for (const MethodInfo& method : Record("a.b.C").getMethods({0}, Context::Any, nullptr))
    all += shown(method.definingClass) + (method.isStatic ? "! " : " ");
  EXPECT_EQ(all, "Base Base! a.b.C a.b.C a.b.C a.b.C ");
}

TEST_F(MethodQueries, EveryQueryBeginsWithClearLists) {
  const Record record("Right"), excluded("double");
  record.getMethods({0}, Context::Any, nullptr);
  EXPECT_EQ(namesOf(record.methodVisitor.hiddenMethods), "make");
  EXPECT_EQ(world.asked([&] { record.getMethods({0}, Context::None, nullptr); }), "");
  EXPECT_EQ(namesOf(record.methodVisitor.hiddenMethods), "");
  excluded.methodVisitor.methods.resize(1);
  EXPECT_EQ(world.asked([&] { excluded.getMethods({0}, Context::BeforeDot, nullptr); }), "");
  EXPECT_TRUE(excluded.methodVisitor.methods.empty());
}

// The position counts for what is listed only: hidden methods are filed in every context.
TEST_F(MethodQueries, HiddenOnesAreFiledWithoutAPosition) {
  const Record record("a.b.C");
  record.methodVisitor.clear({});
  KCOSIntrospection::getCOSClass(KCOSContextData::ResolvedClassID::fromKnownResolvedClassID("a.b.C"))
      ->visitMethods(record.methodVisitor);
  EXPECT_EQ(namesOf(record.methodVisitor.methods), "");
  EXPECT_EQ(namesOf(record.methodVisitor.hiddenMethods), "foo minus");
}

TEST(MethodNames, OperatorsAndClassesThatTakePart) {
  for (const Cells& row : rowsOf("tests/classinfo/tables.rows", "MethodNames.Operators"))
    for (std::size_t at = 1; at < row.size(); ++at) {
      EXPECT_EQ(shown(MethodInfo::isOperatorOverload(row[at])), row[0]) << row[at];
      EXPECT_EQ(shown(MethodInfo::isOperatorOverload(wide(row[at]))), row[0]) << row[at];
    }
  for (const auto& [before, after, names] : rowsOf<3>("tests/classinfo/tables.rows", "MethodNames.Classes")) {
    std::vector<std::string> all;
    for (const std::string& name : boost::split(all, names, boost::is_space())) {
      const auto id = kcos::internal::makeInterned(name);
      EXPECT_EQ(shown(MethodInfo::isClassToCompleteMethodsForBeforeDot(id)), before) << name;
      EXPECT_EQ(shown(MethodInfo::isClassToCompleteMethodsForAfterDot(id)), after) << name;
    }
  }
  EXPECT_TRUE(MethodInfo::isClassToCompleteMethodsForBeforeDot({}));
}

}  // namespace
