// What a record is made of, its place among the classes, and what a specialised one changes.

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/classinfo/Shown.h"
#include "tests/support/Slots.h"
#include "tests/support/Table.h"

// Before any query, before main and without a host: the sets of class names are there.
const bool takePartAtLoadTime[] = {
    KCOSContextData::MethodInfo::isClassToCompleteMethodsForBeforeDot(kcos::internal::makeInterned("uint16")),
    !KCOSContextData::MethodInfo::isClassToCompleteMethodsForBeforeDot(
        kcos::internal::makeInterned("double")),
    !KCOSContextData::MethodInfo::isClassToCompleteMethodsForAfterDot(
        kcos::internal::makeInterned("datetime"))};

namespace {

using namespace KCOSContextData;

struct Records : testing::Test {
  static std::string about(const ClassInfo& record) {
    return shown(record.structure.name) + "/" + textOf(record.classId) + "/" +
           shownList(record.structure.getSuperclasses());
  }

  World world{worldFile("tests/classinfo/records.json")};
};

TEST_F(Records, NamesAndIdentities) {
  for (const auto& row : rowsOf<2>("tests/classinfo/tables.rows", "Records.NamesAndIdentities"))
    EXPECT_EQ(about(Record(row[0])), row[1]);
  EXPECT_EQ(about(ClassInfo(ResolvedClassID::fromKnownResolvedClassID(std::string()))), "/null/");
  EXPECT_EQ(about(ClassInfo(u"f", u"C")), "lab.C/c:lab.C/lab.C A R B R");
  EXPECT_EQ(about(ClassInfo(u"C", u"f")), "/null/");
  EXPECT_EQ(about(ClassInfo(u"f", u"")), "/null/");
}

TEST_F(Records, OfValues) {
  // A name that no variable has stands for no value.
  for (const auto& [name, expected] : rowsOf<2>("tests/classinfo/tables.rows", "Records.OfValues"))
    EXPECT_EQ(about(ClassInfo(world.host.variable(name).get())), expected) << name;
  const boost::intrusive_ptr<kxArray_tag> number = world.host.variable("number");
  EXPECT_EQ(world.asked([&] { ClassInfo record(number.get()); }), "omIsKCOS");
  // A record of a value bears the identity's text, its superclasses the names that users know.
  const ClassInfo c(world.host.variable("c").get());
  EXPECT_FALSE(c.isA(u"lab.C"));
  EXPECT_TRUE(c.isA(u"c:lab.C") && c.isA(u"A"));
  EXPECT_EQ(namesOf(c.getProperties({})), "p");
}

TEST_F(Records, IsA) {
  for (const auto& [id, name, byName, byIdentity] : rowsOf<4>("tests/classinfo/tables.rows", "Records.IsA")) {
    const Record record(id);
    EXPECT_EQ(shown(record.isA(wide(name))), byName) << id << " " << name;
    EXPECT_EQ(shown(record.isA(kcos::internal::makeInterned(name))), byIdentity) << id << " " << name;
  }
  const Record sub("Sub");
  EXPECT_FALSE(sub.isA(kcos::COSInternedName()));
  EXPECT_TRUE(Record("").isA(kcos::COSInternedName()));
  EXPECT_EQ(namesOf(Record("Nick").getProperties({})), "");
  EXPECT_EQ(world.asked([&] { sub.isA(u"nobody"), sub.isA(kcos::COSInternedName()); }), "");
}

TEST_F(Records, Attributes) {
  const auto all = [](const ClassInfo& record, bool argument) {
    const AttributeSets sets = record.getAttributes(argument);
    return shownList(sets.attributeList1) + "/" + shownList(sets.attributeList2) + "/" +
           shownList(sets.attributeList3) + "/" + shownList(sets.attributeList4);
  };
  for (const auto& [id, argument, expected] : rowsOf<3>("tests/classinfo/tables.rows", "Records.Attributes"))
    EXPECT_EQ(all(Record(id), argument == "true"), expected) << id;
  Record inheritor("nobody");  // of an unknown class the superclasses still count
  inheritor.structure.superclasses = Record("A").structure.superclasses;
  EXPECT_EQ(all(inheritor, false), "both r///4");
  // The name decides, not the identity; a failing superclass adds nothing, a failing own list leaves nothing.
  Record nameless("R");
  nameless.structure.name.clear();
  EXPECT_EQ(world.asked([&] { EXPECT_EQ(all(nameless, true), "///"); }), "");
  const Record c("c:lab.C");
  world.host.setFault({"kcos::COSClass::getAttributeNames4", 1, false, [] { throw 42; }});
  EXPECT_EQ(all(c, false), "///");
  world.host.setFault({"kcos::COSClass::getClass", 2, true, [] { throw 42; }});
  EXPECT_EQ(all(c, false), "both c/2//");
  world.host.clearFault();
}

TEST_F(Records, AFailingSuperclassListClearsThatLevelOnly) {
  for (const auto& [operation, call, expected] :
       rowsOf<3>("tests/classinfo/tables.rows", "Records.AFailingSuperclassListClearsThatLevelOnly")) {
    world.host.setFault({operation, std::stoul(call), false, [] { throw 42; }});
    EXPECT_EQ(about(Record("Sub")), expected) << operation << call;
    EXPECT_TRUE(world.host.clearFault()) << operation << call;
  }
}

TEST(Slots, AreInTheirOrder) {
  using Properties = PropertyVisitorMutable;
  using Methods = MethodVisitorMutable;
  EXPECT_TRUE(std::has_virtual_destructor_v<ClassInfo>);  // the first two
  EXPECT_EQ(
      slotOf<std::vector<PropertyInfo>(const PropertyInfo::GetOptions&) const>(&ClassInfo::getProperties), 2);
  EXPECT_EQ(slotOf<std::vector<MethodInfo>(const MethodInfo::GetOptions&) const>(&ClassInfo::getMethods), 3);
  EXPECT_EQ(slotOf(&ClassInfo::getAttributes), 4);
  EXPECT_EQ(slotOf<bool(const std::u16string&) const>(&ClassInfo::isA), 5);
  EXPECT_EQ(slotOf<bool(kcos::COSInternedName) const>(&ClassInfo::isA), 6);
  EXPECT_EQ(slotOf(&ClassInfo::getDefaultAccessibility), 7);
  EXPECT_EQ(slotOf<void(kcos::COSInterface*)>(&Properties::visit), 2);
  EXPECT_EQ(slotOf<void(kcos::COSInterfacePtr, kcos::COSPropInfo*)>(&Properties::visit), 3);
  EXPECT_EQ(slotOf<void(kcos::COSInterface*)>(&Methods::visit), 2);
  EXPECT_EQ(slotOf<void(kcos::COSInterfacePtr, kcos::COSMethodInfo*)>(&Methods::visit), 3);
}

TEST(RecordsAlone, FieldsStandInTheirOrder) {
  const ClassInfo record(nullptr);
  const auto at = [&](const auto& field) {
    return reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&record);
  };
  EXPECT_EQ(at(record.structure), static_cast<long>(sizeof(void*)));
  EXPECT_EQ(at(record.structure.name), at(record.structure));
  EXPECT_LT(at(record.structure.superclasses), at(record.classId));
  EXPECT_LT(at(record.classId), at(record.propertyVisitor));
  EXPECT_LT(at(record.propertyVisitor), at(record.methodVisitor));
  EXPECT_TRUE(record.propertyVisitor.owner == &record && record.methodVisitor.owner == &record);
  EXPECT_EQ(record.propertyVisitor.accessLevels, std::vector<std::int32_t>{0});
  EXPECT_EQ(record.propertyVisitor.accessorKinds, (std::vector<std::int32_t>{0, 1}));
  EXPECT_TRUE(record.propertyVisitor.accessingClass == nullptr && !record.propertyVisitor.includeHidden);
  EXPECT_TRUE(record.getProperties({}).empty() &&
              record.getMethods({.context = MethodInfo::GetContext::Any}).empty());
}

TEST(RecordsAlone, TheDefaultAccessibilityIsOneList) {
  const ClassInfo one(nullptr), other(nullptr);
  EXPECT_EQ(one.getDefaultAccessibility(), std::vector<std::int32_t>{0});
  EXPECT_EQ(&one.getDefaultAccessibility(), &other.getDefaultAccessibility());
}

TEST(RecordsAlone, ClassNamesTakePartBeforeMain) {
  for (const bool takesPart : takePartAtLoadTime) EXPECT_TRUE(takesPart);
}

struct Special : ClassInfo {
  Special() : ClassInfo(nullptr) { structure.name = u"Special"; }
  std::vector<PropertyInfo> getProperties(const PropertyInfo::GetOptions& options) const override {
    levels = options.accessLevels;
    if (throws) throw 42;
    std::vector<PropertyInfo> one(1);
    one[0].name = u"special";
    return one;
  }
  std::vector<MethodInfo> getMethods(const MethodInfo::GetOptions& options) const override {
    levels = options.access;
    return {{u"special", u"S", false}};
  }
  AttributeSets getAttributes(bool) const override { return {{u"special"}, {}, {}, {}}; }
  bool isA(const std::u16string& name) const override { return name == u"anything"; }
  bool isA(kcos::COSInternedName) const override { return true; }
  using ClassInfo::getMethods;
  using ClassInfo::getProperties;

  mutable std::vector<std::int32_t> levels;
  bool throws = false;
};

TEST_F(Records, SpecialisedOnesAreHonoured) {
  const auto special = std::make_shared<Special>();
  EXPECT_EQ(namesOf(special->getProperties({7}, nullptr)), "special");
  EXPECT_EQ(special->levels, std::vector<std::int32_t>{7});
  EXPECT_EQ(namesOf(special->getMethods({8}, MethodInfo::GetContext::None, nullptr)), "special");
  EXPECT_EQ(special->levels, std::vector<std::int32_t>{8});

  Record c("c:lab.C");
  c.structure.superclasses = {special};
  EXPECT_EQ(namesOf(c.getProperties({0, 2, 2}, nullptr)), "special p");
  EXPECT_EQ(special->levels, (std::vector<std::int32_t>{0, 2}));
  EXPECT_EQ(namesOf(c.getMethods({2, 0}, MethodInfo::GetContext::Any, nullptr)), "special");
  EXPECT_EQ(special->levels, std::vector<std::int32_t>{0});
  EXPECT_EQ(shownList(c.getAttributes(false).attributeList1), "both c special");
  EXPECT_TRUE(c.isA(u"anything") && c.isA(kcos::internal::makeInterned("anything")));
  EXPECT_EQ(shownList(c.structure.getSuperclasses()), "lab.C Special");
  special->throws = true;
  EXPECT_EQ(namesOf(c.getProperties({})), "p");

  World granting(R"({"format": 1, "classes": [{"name": "X"}, {"name": "G", "properties":
    [{"name": "g", "access": ["X"]}], "methods": [{"name": "m", "access": ["X"]}]}]})");
  EXPECT_EQ(namesOf(Record("G").getProperties({9}, special.get())), "g");
  EXPECT_EQ(namesOf(Record("G").getMethods({9}, MethodInfo::GetContext::Any, special.get())), "m");
}

}  // namespace
