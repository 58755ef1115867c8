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
  std::string ofVariable(const std::string& name) const {
    return about(ClassInfo(world.host.variable(name).get()));
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
  EXPECT_EQ(ofVariable("c"), "c:lab.C/c:lab.C/c:lab.C A R B R");
  EXPECT_EQ(ofVariable("sub"), "Sub/Sub/Sub lab.C A R B R");
  EXPECT_EQ(ofVariable("broken"), "/null/");
  EXPECT_EQ(ofVariable("number"), "/null/");
  EXPECT_EQ(about(ClassInfo(static_cast<const kxArray_tag*>(nullptr))), "/null/");
  const boost::intrusive_ptr<kxArray_tag> number = world.host.variable("number");
  EXPECT_EQ(world.asked([&] { ClassInfo record(number.get()); }), "omIsKCOS");
  // A record of a value bears the identity's text, its superclasses the names that users know.
  const ClassInfo c(world.host.variable("c").get());
  EXPECT_FALSE(c.isA(u"lab.C"));
  EXPECT_TRUE(c.isA(u"c:lab.C") && c.isA(u"A"));
  EXPECT_EQ(namesOf(c.getProperties({})), "p");
}

TEST_F(Records, IsA) {
  const Record sub("Sub"), nick("Nick");
  const ClassInfo empty(nullptr);
  const auto id = kcos::internal::makeInterned;
  for (const char16_t* name : {u"Sub", u"lab.C", u"A", u"B", u"R"}) EXPECT_TRUE(sub.isA(name));
  for (const char16_t* name : {u"", u"sub", u"C", u"c:lab.C", u"r"}) EXPECT_FALSE(sub.isA(name));
  for (const char* name : {"Sub", "c:lab.C", "A", "R"}) EXPECT_TRUE(sub.isA(id(name))) << name;
  EXPECT_FALSE(sub.isA(id("lab.C")) || sub.isA(id("Nick")) || sub.isA(kcos::COSInternedName()));
  EXPECT_TRUE(nick.isA(id("Nick")) && nick.isA(u"lab.C"));
  EXPECT_FALSE(nick.isA(id("c:lab.C")));
  EXPECT_EQ(namesOf(nick.getProperties({})), "");
  EXPECT_TRUE(empty.isA(u"") && empty.isA(kcos::COSInternedName()));
  EXPECT_FALSE(empty.isA(u"A") || empty.isA(id("A")));
  EXPECT_EQ(world.asked([&] { sub.isA(u"nobody"), sub.isA(kcos::COSInternedName()); }), "");
}

TEST_F(Records, Attributes) {
  const auto all = [](const ClassInfo& record, bool argument) {
    const AttributeSets sets = record.getAttributes(argument);
    return shownList(sets.attributeList1) + "/" + shownList(sets.attributeList2) + "/" +
           shownList(sets.attributeList3) + "/" + shownList(sets.attributeList4);
  };
  EXPECT_EQ(all(Record("c:lab.C"), false), "both c r/2//4");
  EXPECT_EQ(all(Record("Sub"), true), "both c r/2/late/4");
  EXPECT_EQ(all(Record("R"), true), "both r//late/4");
  EXPECT_EQ(all(Record("nobody"), true), "///");
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
  const auto failing = [&](const std::string& operation, int call) {
    world.host.setFault({operation, static_cast<std::uint64_t>(call), false, [] { throw 42; }});
    const std::string text = about(Record("Sub"));
    EXPECT_TRUE(world.host.clearFault()) << operation << call;
    return text;
  };
  const std::string getClass = "kcos::COSClass::getClass", superclasses = "kcos::COSClass::getSuperclasses";
  for (const auto& [call, left] : tableOf<2>("1 | ; 2 | lab.C; 3 | lab.C A B R; 5 | lab.C A R B"))
    EXPECT_EQ(failing(superclasses, std::stoi(call)), "Sub/Sub/Sub" + (left.empty() ? "" : " " + left));
  EXPECT_EQ(failing(getClass, 1), "Sub/Sub/Sub");
  // What a nested record throws outside of its own list clears the list that it stands in.
  EXPECT_EQ(failing("kcos::nameresolution::getUserVisibleClassName", 3), "Sub/Sub/Sub lab.C");
}

TEST(Slots, AreInTheirOrder) {
  using Properties = std::vector<PropertyInfo> (ClassInfo::*)(const PropertyInfo::GetOptions&) const;
  using Methods = std::vector<MethodInfo> (ClassInfo::*)(const MethodInfo::GetOptions&) const;
  EXPECT_TRUE(std::has_virtual_destructor_v<ClassInfo>);  // the first two
  EXPECT_EQ((std::vector<long>{
                slotOf(static_cast<Properties>(&ClassInfo::getProperties)),
                slotOf(static_cast<Methods>(&ClassInfo::getMethods)), slotOf(&ClassInfo::getAttributes),
                slotOf(static_cast<bool (ClassInfo::*)(const std::u16string&) const>(&ClassInfo::isA)),
                slotOf(static_cast<bool (ClassInfo::*)(kcos::COSInternedName) const>(&ClassInfo::isA)),
                slotOf(&ClassInfo::getDefaultAccessibility)}),
            (std::vector<long>{2, 3, 4, 5, 6, 7}));
  const auto ofVisits = []<class Visitor, class Info>(void (Visitor::*one)(kcos::COSInterface*),
                                                      void (Visitor::*two)(kcos::COSInterfacePtr, Info*)) {
    return std::vector<long>{slotOf(one), slotOf(two)};
  };
  EXPECT_EQ((ofVisits.operator()<PropertyVisitorMutable, kcos::COSPropInfo>(&PropertyVisitorMutable::visit,
                                                                            &PropertyVisitorMutable::visit)),
            (std::vector<long>{2, 3}));
  EXPECT_EQ((ofVisits.operator()<MethodVisitorMutable, kcos::COSMethodInfo>(&MethodVisitorMutable::visit,
                                                                            &MethodVisitorMutable::visit)),
            (std::vector<long>{2, 3}));
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
