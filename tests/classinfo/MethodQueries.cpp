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
  static std::string of(const std::string& id, const Options& options) {
    return namesOf(Record(id).getMethods(options));
  }

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
  const auto any = [](bool constructors, bool operators, bool hidden) {
    return Options{.context = Context::Any,
                   .includeConstructors = constructors,
                   .includeOperatorOverloads = operators,
                   .includeHidden = hidden};
  };
  EXPECT_EQ(of("a.b.C", any(true, false, false)), "Base bar make C b.C a.b.C .C bC bar bar");
  EXPECT_EQ(of("a.b.C", any(false, true, false)), "bar plus make .C bC bar bar");
  EXPECT_EQ(of("a.b.C", any(false, false, true)), "foo bar make .C bC foo bar bar");
  EXPECT_EQ(of("a.b.C", any(false, true, true)), "foo bar plus make .C bC foo bar bar minus");
  EXPECT_EQ(of("MasksOperator", any(false, true, false)), "foo bar make");
  EXPECT_EQ(of("MasksOperator", any(false, true, true)), "foo bar plus make plus");
  EXPECT_EQ(of("MasksSecretly", {.access = {0, 2}, .context = Context::Any}), "bar make");
}

TEST_F(MethodQueries, AccessByLevelAndClass) {
  const Record base("Base"), left("Left"), right("Right");
  const Options inherited{.access = {2, 2}, .context = Context::Any};
  EXPECT_EQ(of("a.b.C", {.access = {2}, .context = Context::Any}), "own");
  EXPECT_EQ(of("a.b.C", inherited), "own own");
  EXPECT_EQ(namesOf(Record("Diamond").getMethodsOfSuperclasses(inherited)), "");
  EXPECT_EQ(of("Diamond", {.access = {2, 2, 2}, .context = Context::Any}), "own own");
  EXPECT_EQ(of("Base", {.access = {}, .context = Context::Any}), "");
  for (const auto& [accessing, expected] : std::vector<std::pair<const Record*, std::string>>{
           {nullptr, ""}, {&base, "forBase"}, {&left, "forBase also"}, {&right, "forBase"}})
    EXPECT_EQ(of("Granting", {.access = {9}, .accessingClass = accessing, .context = Context::AfterDot}),
              expected);
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
  for (const char* name : {"plus", "subsref", "vertcat", "colon", "subsindex"}) {
    EXPECT_TRUE(MethodInfo::isOperatorOverload(std::string(name))) << name;
    EXPECT_TRUE(MethodInfo::isOperatorOverload(wide(name))) << name;
  }
  for (const char* name : {"Plus", "display", "", "plus "}) {
    EXPECT_FALSE(MethodInfo::isOperatorOverload(std::string(name))) << name;
    EXPECT_FALSE(MethodInfo::isOperatorOverload(wide(name))) << name;
  }
  for (const auto& [names, before, after] : std::vector<std::tuple<const char*, bool, bool>>{
           {"double single int8 uint8 int16 unit16 in32 uint32 int64 uint64 logical char struct cell "
            "function_handle handle",
            false, false},
           {"table timetable tall datetime duration categorical korval.io.KorFile", true, false},
           {"uint16 int32 Double string lab.double double.x", true, true}}) {
    std::vector<std::string> all;
    for (const std::string& name : boost::split(all, names, boost::is_space())) {
      const auto id = kcos::internal::makeInterned(name);
      EXPECT_EQ(MethodInfo::isClassToCompleteMethodsForBeforeDot(id), before) << name;
      EXPECT_EQ(MethodInfo::isClassToCompleteMethodsForAfterDot(id), after) << name;
    }
  }
  EXPECT_TRUE(MethodInfo::isClassToCompleteMethodsForBeforeDot({}));
}

}  // namespace
