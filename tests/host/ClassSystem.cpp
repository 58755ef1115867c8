#include <boost/algorithm/string/join.hpp>
#include <stdexcept>

#include "host/Dispatcher.h"
#include "host/Text.h"
#include "tests/host/Rows.h"
#include "tests/support/Table.h"

namespace {

using world::Capability;
using world::classNamed;
using world::InLab;
using world::named;
using world::namesIn;
using world::runs;
using Names = std::vector<std::string>;

TEST_F(InLab, AClassAnswersToItsIdentityAndTheNamesThatStandForIt) {
  const kcos::COSClass& pump = classNamed("lab.Pump");
  ASSERT_TRUE(runs());
  EXPECT_EQ(&pump, &classNamed(pump.getID().text()));
  EXPECT_STREQ("Pump", pump.getSimpleName());
  EXPECT_STREQ("lab.Pump", pump.getDottedName());
  EXPECT_EQ("lab.Pump", kcos::nameresolution::getUserVisibleClassName(pump.getID()));
  EXPECT_EQ(pump.getID().text(), kcos::nameresolution::omResolveAnyClass("lab.Pump", nullptr));
  if (runs(Capability::Aliases)) {
    EXPECT_EQ(&pump, &classNamed("OldPump"));
    EXPECT_EQ("lab.Pump", kcos::nameresolution::getUserVisibleClassName("OldPump"));
  }
  if (runs(Capability::Components)) {
    EXPECT_NE("lab.Pump", pump.getID().text());
  }
  // Exactly what the resolver returns, however a name looks.
  EXPECT_TRUE(kcos::nameresolution::isPackageQualifiedName(pump.getID()));
  for (const char* name : {"lab.Pump", "OldPump", "nope:lab.Pump", "C:/tmp/x", "lab:", ""})
    EXPECT_EQ(pump.getID().text() == name, kcos::nameresolution::isPackageQualifiedName(name)) << name;
}

TEST_F(InLab, UnknownAndNullNamesHaveNoClass) {
  const kcos::COSClass& pump = classNamed("lab.Pump");
  for (const kcos::COSInternedName& name : {kcos::COSInternedName(), named("Pump"), named("lab"),
                                            named("lab.pump"), named("."), named(std::string("\0", 1))}) {
    ASSERT_TRUE(runs());
    EXPECT_EQ(nullptr, kcos::COSClass::getClass(name)) << name.text();
    EXPECT_FALSE(pump.isDerivedFrom(name)) << name.text();
    EXPECT_FALSE(pump.findProperty(name)) << name.text();
    EXPECT_FALSE(pump.findMethods(name).hasMoreElements()) << name.text();
  }
  EXPECT_FALSE(kcos::COSNamespace::getNamespaceInterface({}));
  EXPECT_FALSE(kcos::COSNamespace::getNamespaceInterface(named("lab.Pump")));
  EXPECT_EQ("", kcos::nameresolution::omResolveAnyClass("Pump", nullptr));
  EXPECT_EQ(nullptr, Kdispatcher::getDispatcher()->findFunction(u""));
  EXPECT_NE(nullptr, Kdispatcher::getDispatcher()->findFunction(u"lab.run"));
}

TEST_F(InLab, WalksMeetEveryMemberOnceOwnOnesInTheirOrder) {
  const auto sorted = [](Names names) {
    std::ranges::sort(names);
    return names;
  };
  for (const auto& [name, properties, methods] : rowsOf<3>("tests/host/tables.rows", "Walks")) {
    ASSERT_TRUE(runs());
    EXPECT_EQ(properties, boost::algorithm::join(sorted(world::propertiesOf(classNamed(name))), " ")) << name;
    Names once = sorted(world::methodsOf(classNamed(name)));  // overloads are visited each
    once.erase(std::unique(once.begin(), once.end()), once.end());
    EXPECT_EQ(methods, boost::algorithm::join(once, " ")) << name;
  }
  EXPECT_EQ(world::propertiesOf(classNamed("lab.Pump")), world::propertiesOf(classNamed("lab.small.Valve")));
}

TEST_F(InLab, WhatAVisitorThrowsPasses) {
  ASSERT_TRUE(runs());
  struct : kcos::COSVisitor<kcos::COSInterface*> {
    void visit(kcos::COSInterface*) override { throw ++calls; }
    int calls = 0;
  } visitor;
  EXPECT_THROW(classNamed("lab.Pump").visitProperties(visitor), int);
  EXPECT_THROW(classNamed("lab.Pump").visitMethods(visitor), int);
  EXPECT_EQ(2, visitor.calls);
}

TEST_F(InLab, MembersAnswerWhatThePlanSays) {
  ASSERT_TRUE(runs());
  kcos::COSClass& pump = classNamed("lab.Pump");
  const kcos::COSInterfacePtr interface = pump.findProperty(named("flow"));
  const kcos::COSPropInfo& flow = *kcos::cosiToProp(interface.get());
  EXPECT_EQ(&pump, kcos::cosiClassOfMember(interface.get()));
  EXPECT_TRUE(flow.isVisible());
  EXPECT_EQ(named("double"), flow.getDataType().getID());
  EXPECT_EQ(kcos::PublicAccess, flow.getMemberGetAccess());
  EXPECT_EQ(kcos::PrivateAccess, flow.getMemberSetAccess());
  EXPECT_EQ(std::set{named("Base")}, flow.getExtendedGetAccess().classes);
  EXPECT_EQ(std::set<kcos::COSInternedName>(), flow.getExtendedSetAccess().classes);
  EXPECT_EQ(nullptr, dynamic_cast<const kcos::COSOptimizedPropInfo*>(&flow));
  const kcos::COSPropInfo& shared = *kcos::cosiToProp(pump.findProperty(named("shared")).get());
  EXPECT_FALSE(shared.isVisible());
  EXPECT_TRUE(shared.isDependent());
  EXPECT_FALSE(shared.getDataType());
  EXPECT_EQ(&classNamed("Base"), kcos::cosiClassOfMember(pump.findProperty(named("id")).get()));
  EXPECT_NE(nullptr, COSGetPublicClient());
  if (runs(Capability::Optimized)) {
    auto* rate = kcos::cosiToProp(classNamed("Fast").findProperty(named("rate")).get());
    ASSERT_NE(nullptr, dynamic_cast<kcos::COSOptimizedPropInfo*>(rate));
    EXPECT_TRUE(dynamic_cast<kcos::COSOptimizedPropInfo*>(rate)->hasCustomGetter());
  }
}

TEST_F(InLab, PropertiesWhoseReadingRunsCodeSaySo) {
  if (!runs(Capability::GetMethods)) return;
  // However they are declared: nothing else tells that reading them is no look at what is stored.
  const kcos::COSClass& read = classNamed("Read");
  const Names names = world::propertiesOf(read);
  EXPECT_EQ(runs(Capability::Optimized) ? 2U : 1U, names.size());
  for (const std::string& name : names) {
    const kcos::COSInterfacePtr property = read.findProperty(named(name.substr(0, name.find('@'))));
    const auto* record = dynamic_cast<kcos::COSOptimizedPropInfo*>(kcos::cosiToProp(property.get()));
    ASSERT_NE(nullptr, record) << name;
    EXPECT_TRUE(record->hasCustomGetter()) << name;
  }
}

// What is imported counts alike, wherever it stands; code of a method is code in the namespace of its class.
TEST_F(InLab, ScopesKnowWhatTheyImport) {
  const std::string pump = classNamed("lab.Pump").getID().text();
  const std::string color = classNamed("lab.Color").getID().text();
  const auto meant = [](const char* name, const Kfh_KORVAL_fn* scope) {
    return kcos::nameresolution::omResolveAnyClass(name, scope);
  };
  struct {
    Capability needed;
    const char16_t* scope;
    bool knowsAll;
  } const rows[] = {
      {Capability::Imports, u"declares", false},
      {Capability::CodeOfFunctions, u"writes", false},
      {Capability::CodeFiles, u"filed", true},
      {Capability::GetMethods, u"Read.level", false},
      {Capability::ScopesOfMethods, u"Tools.tune", false},
      {Capability::ScopesOfMethods, u"lab.Pump.start", true},
  };
  for (const auto& row : rows) {
    if (!runs(row.needed)) continue;
    SCOPED_TRACE(fl::i18n::to_string(row.scope));
    const Kfh_KORVAL_fn* scope = Kdispatcher::getDispatcher()->findFunction(row.scope);
    ASSERT_NE(nullptr, scope);
    EXPECT_EQ(scope, Kdispatcher::getDispatcher()->findFunction(row.scope));
    EXPECT_EQ(pump, meant("Pump", scope));
    EXPECT_EQ(row.knowsAll ? color : "", meant("Color", scope));
    EXPECT_EQ(color, meant("lab.Color", scope));
    EXPECT_EQ("", meant("Nothing", scope));
  }
  for (const char16_t* name : {u"Tools.nothing", u"lab.Pump.flow", u"nothing", u"Tools."})
    EXPECT_EQ(nullptr, Kdispatcher::getDispatcher()->findFunction(name)) << fl::i18n::to_string(name);
}

TEST_F(InLab, MethodsAreFoundByNameAndIteratorsAreFreshAndEnd) {
  const kcos::COSClass& pump = classNamed("lab.Pump");
  const std::size_t starts = runs(Capability::Overloads) ? 4 : 3;
  for (int pass = 0; pass < 2; ++pass) EXPECT_EQ(starts, namesIn(pump.findMethods(named("start"))).size());
  kcos::COSIterator stops = pump.findMethods(named("stop"));
  const auto* stop = kcos::cosiToMethod(stops.nextElement().get());
  EXPECT_TRUE(stop->isStatic() && stop->isVisible() && !stop->isHidden());
  const auto* hide = kcos::cosiToMethod(pump.findMethods(named("hide")).nextElement().get());
  EXPECT_TRUE(!hide->isStatic() && !hide->isVisible() && hide->isHidden());
  EXPECT_FALSE(stops.hasMoreElements());
  EXPECT_THROW(stops.nextElement(), kcos::ENoElements);
  EXPECT_THROW(kcos::COSIterator().nextElement(), kcos::ENoElements);
}

TEST_F(InLab, DerivationAndSuperclassesFollowTheDeclaration) {
  ASSERT_TRUE(runs());
  const kcos::COSClass& valve = classNamed("lab.small.Valve");
  for (const char* base : {"lab.Pump", "Base", "Other"})
    EXPECT_TRUE(valve.isDerivedFrom(named(base))) << base;
  EXPECT_TRUE(valve.isDerivedFrom(classNamed("lab.Pump").getID()));
  EXPECT_FALSE(valve.isDerivedFrom(named("lab.Color")));
  EXPECT_FALSE(classNamed("Base").isDerivedFrom(named("lab.Pump")));
  auto superclasses = classNamed("lab.Pump").getSuperclasses();
  for (const char* base : {"Base", "Other"})
    EXPECT_EQ(&classNamed(base), kcos::COSClass::getClass(superclasses.nextElement()));
  EXPECT_FALSE(superclasses.hasMoreElements());
  EXPECT_FALSE(classNamed("Base").getSuperclasses().hasMoreElements());
}

TEST_F(InLab, EnumerationsNamespacesAndFlags) {
  ASSERT_TRUE(runs());
  kcos::COSClass& color = classNamed("lab.Color");
  EXPECT_EQ((Names{"Red", "Secret", "Red"}), namesIn(color.getEnumerationMembers()));
  EXPECT_TRUE(color.isEnumeration());
  EXPECT_FALSE(classNamed("Base").isEnumeration());
  EXPECT_FALSE(classNamed("Base").getEnumerationMembers().hasMoreElements());
  EXPECT_TRUE(classNamed("lab.Pump").getClassFlag());
  EXPECT_FALSE(color.getClassFlag());
  EXPECT_EQ(&color, color.checkClass(false));
  kcos::COSNamespace* lab =
      kcos::cosiToNamespace(kcos::COSNamespace::getNamespaceInterface(named("lab")).get());
  ASSERT_NE(nullptr, lab);
  EXPECT_EQ(lab, color.getNamespace());
  EXPECT_EQ(nullptr, classNamed("Base").getNamespace());
  EXPECT_EQ((Names{"lab.Pump", "lab.Color"}), namesIn(lab->getClasses()));
  EXPECT_EQ((Names{"lab.small"}), namesIn(lab->getNamespaces()));
  EXPECT_EQ(runs(Capability::ArgumentDeclarations) ? 2U : 1U, namesIn(lab->getFunctions()).size());
  EXPECT_STREQ("small", classNamed("lab.small.Valve").getNamespace()->getSimpleName());
  EXPECT_FALSE(kcos::cosiToProp(nullptr) || kcos::cosiToMethod(nullptr) || kcos::cosiToEnum(nullptr) ||
               kcos::cosiToClass(nullptr) || kcos::cosiToNamespace(nullptr));
}

TEST_F(InLab, BrokenClassesAndMissingNames) {
  if (runs(Capability::BrokenClasses)) {
    EXPECT_EQ(nullptr, classNamed("Broken").checkClass(false));
  }
  if (!runs(Capability::MissingNames)) return;
  EXPECT_EQ(Names{"(none)@Nameless"}, world::propertiesOf(classNamed("Nameless")));
  EXPECT_EQ(Names{"(none)@Nameless"}, world::methodsOf(classNamed("Nameless")));
}

}  // namespace
