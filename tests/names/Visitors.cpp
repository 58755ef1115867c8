#include <contextdata/KCOSIntrospection.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "contextdata/internal/NameVisitors.h"
#include "tests/support/Slots.h"
#include "tests/support/Table.h"
#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace {

using Names = std::vector<std::u16string>;
using KCOSContextData::ResolvedClassID;

struct Visitors : testing::Test {
  static kcos::COSClass* classOf(const std::string& name) {
    return KCOSIntrospection::getCOSClass(ResolvedClassID::fromKnownResolvedClassID(name));
  }

  World world{worldFile("tests/names/visitors.json")};
};

TEST_F(Visitors, PropertiesBySelection) {
  for (const auto& row : rowsOf<3>("tests/names/tables.rows", "Visitors.PropertiesBySelection")) {
    Names names, withoutTypes;
    std::vector<kcos::COSDataTypePtr> types;
    const auto selection = static_cast<std::uint32_t>(std::stoul(row[0]));
    KCOSPropertyNameVisitor visitor(&names, &types, selection), plain(&withoutTypes, nullptr, selection);
    classOf("p.Properties")->visitProperties(visitor);
    classOf("p.Properties")->visitProperties(plain);
    std::string shownTypes;
    for (const auto& type : types)
      shownTypes += (shownTypes.empty() ? "" : " ") + (type ? type.getID().text() : "-");
    EXPECT_EQ(shownList(names), row[1]) << row[0];
    EXPECT_EQ(shownTypes, row[2]) << row[0];
    EXPECT_EQ(withoutTypes, names);
  }
}

TEST_F(Visitors, MethodsBySelectionAndOrder) {
  for (const auto& row : rowsOf<3>("tests/names/tables.rows", "Visitors.MethodsBySelectionAndOrder")) {
    Names names;
    appendMethodNames(classOf(row[0]), names, static_cast<std::uint32_t>(std::stoul(row[1])));
    EXPECT_EQ(shownList(names), row[2]) << row[0] << " " << row[1];
  }
}

TEST_F(Visitors, MethodWalksMakeRoom) {
  for (const auto& row : rowsOf<3>("tests/names/tables.rows", "Visitors.MethodWalksMakeRoom")) {
    Names names;
    names.reserve(std::stoul(row[1]));
    if (names.capacity() > 0) names.push_back(u"kept");
    const Names before = names;
    appendMethodNames(classOf(row[0]), names, KCOSMethodNameVisitor::Static);
    EXPECT_EQ(names.capacity(), std::stoul(row[2])) << row[0] << " " << row[1];
    names.resize(before.size());
    EXPECT_EQ(names, before);
  }
}

TEST_F(Visitors, SlotsAreTheTwoOfTheDestructorAndVisit) {
  EXPECT_TRUE(std::has_virtual_destructor_v<kcos::COSVisitor<kcos::COSInterface*>>);
  EXPECT_EQ(slotOf(&kcos::COSVisitor<kcos::COSInterface*>::visit), 2);
  EXPECT_EQ(slotOf(&KCOSPropertyNameVisitor::visit), 2);
  EXPECT_EQ(slotOf(&KCOSMethodNameVisitor::visit), 2);
}

}  // namespace
