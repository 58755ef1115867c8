// The order of member walks, name resolution, and worlds that are large or deep.

#include "host/Classes.h"

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <chrono>
#include <filesystem>

#include "tests/support/Growth.h"
#include "tests/support/Table.h"
#include "tests/support/TempFolder.h"
#include "tests/support/World.h"

namespace {

using embedded::ClassDescription;
using embedded::Description;
using embedded::WalkOrder;
using kcos::internal::makeInterned;

ClassDescription& addClass(Description& description, const std::string& name,
                           const std::vector<std::string>& superclasses,
                           WalkOrder order = WalkOrder::OwnFirst) {
  return description.classes.emplace_back(ClassDescription{.name = name,
                                                           .superclasses = superclasses,
                                                           .order = order,
                                                           .properties = {{.name = "p"}},
                                                           .methods = {{.name = "m"}}});
}

/// The classes deep0, deep1, ..., each below the one before.
Description chain(int length, WalkOrder order = WalkOrder::OwnFirst) {
  Description description;
  for (int depth = 0; depth < length; ++depth)
    addClass(description, "deep" + std::to_string(depth),
             std::vector<std::string>(depth > 0 ? 1 : 0, "deep" + std::to_string(depth - 1)), order);
  return description;
}

const kcos::COSClass& classNamed(const std::string& name) {
  return *kcos::COSClass::getClass(makeInterned(name));
}

/// The classes whose members a walk meets, in its order.
struct Owners : kcos::COSVisitor<kcos::COSInterface*> {
  void visit(kcos::COSInterface* member) override {
    names += (names.empty() ? "" : " ") + std::string(kcos::cosiClassOfMember(member)->getDottedName());
    ++count;
  }
  std::string names;
  std::size_t count = 0;
};

TEST(Walks, FollowTheOrderOfEachClass) {
  const auto order = [](const std::string& word) {
    return word == "own" ? WalkOrder::OwnFirst : WalkOrder::InheritedFirst;
  };
  for (const auto& [top, left, right, bottom, walk] :
       rowsOf<5>("tests/embedded/tables.rows", "Walks.FollowTheOrderOfEachClass")) {
    Description description;
    addClass(description, "A", {}, order(top));
    addClass(description, "B", {"A"}, order(left));
    addClass(description, "C", {"A"}, order(right));
    addClass(description, "D", {"B", "C"}, order(bottom));
    World world(description);
    Owners properties, methods, found;
    classNamed("D").visitProperties(properties);
    classNamed("D").visitMethods(methods);
    auto iterator = classNamed("D").findMethods(makeInterned("m"));
    while (iterator.hasMoreElements()) found.visit(iterator.nextElement().get());
    EXPECT_EQ(walk + "|" + walk + "|" + walk, properties.names + "|" + methods.names + "|" + found.names);
    kcos::COSInterface* property = classNamed("D").findProperty(makeInterned("p")).get();
    EXPECT_STREQ("D", kcos::cosiClassOfMember(property)->getDottedName())
        << "the own one, whatever the order";
  }
}

TEST(Walks, DeepAndBraidedWorldsAreWalkedOnce) {
  Description description = chain(500, WalkOrder::InheritedFirst);
  addClass(description, "top0", {});
  for (int level = 1; level <= 12; ++level) {
    const std::string number = std::to_string(level), above = "top" + std::to_string(level - 1);
    addClass(description, "left" + number, {above});
    addClass(description, "right" + number, {above});
    addClass(description, "top" + number, {"left" + number, "right" + number});
  }
  World world(description);
  for (const auto& [name, count, base] :
       {std::tuple("deep499", 500U, "deep0"), std::tuple("top12", 37U, "top0")}) {
    Owners owners;
    classNamed(name).visitProperties(owners);
    EXPECT_EQ(count, owners.count);
    EXPECT_TRUE(classNamed(name).isDerivedFrom(makeInterned(base)));
    EXPECT_TRUE(classNamed(name).isDerivedFrom(makeInterned(name))) << "itself";
    EXPECT_FALSE(classNamed(base).isDerivedFrom(makeInterned(name)));
  }
}

/// What a thread runs: the library makes a class with all its superclasses, asks it, and drops it.
void* climb(void* host) {
  const embedded::Activation active(*static_cast<embedded::Host*>(host));
  const KCOSContextData::ClassInfo info(
      KCOSContextData::ResolvedClassID::fromKnownResolvedClassID("deep9999"));
  EXPECT_TRUE(info.isA(u"deep0"));
  EXPECT_EQ(info.structure.getSuperclasses().size(), 10000U);
  return nullptr;
}

TEST(Walks, TenThousandLevelsFitOnTheStack) {
#ifdef NDEBUG
  constexpr std::size_t stack = std::size_t{8} << 20U;  // what a thread has as a rule
#else
  constexpr std::size_t stack = std::size_t{32} << 20U;
#endif
  embedded::Host host(chain(10000));
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, stack), 0);
  pthread_t thread = {};
  ASSERT_EQ(pthread_create(&thread, &attributes, climb, &host), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_THROW(embedded::Host{chain(10001)}, embedded::SnapshotError);
}

/// Classes of 18 properties each in a hundred namespaces.
Description manyClasses(int count) {
  Description description;
  for (int number = 0; number < count; ++number) {
    ClassDescription& made =
        addClass(description, "n" + std::to_string(number % 100) + ".C" + std::to_string(number), {});
    for (int member = 0; member < 18; ++member)
      made.properties.push_back({.name = "p" + std::to_string(member)});
  }
  return description;
}

TEST(Walks, TenThousandClassesAreBuiltInLinearTime) {
  const Description some = manyClasses(1250);
  const Description many = manyClasses(10000);
  EXPECT_TRUE(isLinear([&] { embedded::Host built(some); }, [&] { embedded::Host built(many); }));
  World world(many);
  Owners owners;
  classNamed("n99.C9999").visitProperties(owners);
  EXPECT_EQ(19U, owners.count);
}

/// Components share names; "lab.Pump" is known by an alias too; functions and methods with code, and inherited ones.
const char* const sharedNames = "tests/embedded/names.json";

TEST(Resolution, FollowsImportsThenTheScopeThenTheNameItself) {
  World world(worldFile(sharedNames));
  for (const auto& [name, scope, identity] :
       rowsOf<3>("tests/embedded/tables.rows", "Resolution.FollowsImportsThenTheScopeThenTheNameItself"))
    EXPECT_EQ(identity, kcos::nameresolution::omResolveAnyClass(name, world.host.function(scope)))
        << name << " in " << scope;
}

TEST(Resolution, CodeIsAScopeWhereverItStands) {
  const TempFolder folder;
  folder.write("helper.k", "function y = helper(x)\n  import other.*\n  y = x;\nend\n");
  folder.write("+lab/tool.k", "y = 1");
  folder.write("@Box/open.k", "import lab.Pump\n1");
  folder.write("broken.k", "x = )\nimport other.Tank % code that is broken somewhere imports all the same");
  Description description = worldFile(sharedNames);
  description.path.push_back({.folder = folder.path().string()});
  World world(description);
  embedded::Host& host = world.host;
  for (const auto& [name, scope, identity, ofClass] :
       rowsOf<4>("tests/embedded/tables.rows", "Resolution.CodeIsAScopeWhereverItStands")) {
    const Kfh_KORVAL_fn* found = host.function(scope);
    EXPECT_EQ(identity == "no scope", found == nullptr) << scope;
    if (found == nullptr) continue;
    EXPECT_EQ(found, host.function(scope)) << scope << ": a scope stays the same";
    EXPECT_EQ(identity, kcos::nameresolution::omResolveAnyClass(name, found)) << name << " in " << scope;
    EXPECT_EQ(ofClass, host.classOfFunction(scope)) << scope;
  }

  // A file that is written anew is read anew.
  const Kfh_KORVAL_fn* before = host.function("helper");
  folder.write("helper.k", "function y = helper(x)\n  y = x;\nend\n");
  std::filesystem::last_write_time(folder.path() / "helper.k",
                                   std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_EQ("acme:Tank", kcos::nameresolution::omResolveAnyClass("Tank", host.function("helper")));
  EXPECT_EQ("other.Tank", kcos::nameresolution::omResolveAnyClass("Tank", before))
      << "what was handed out stays";
}

TEST(Resolution, NamesThatUsersSee) {
  World world(worldFile(sharedNames));
  using namespace kcos::nameresolution;
  for (const auto& [name, seen, qualified] :
       {std::tuple("acme:lab.Pump", "lab.Pump", true), std::tuple("OldPump", "lab.Pump", false),
        std::tuple("other:x.Y", "x.Y", false), std::tuple(":x", ":x", false), std::tuple("x", "x", false)}) {
    EXPECT_EQ(seen, getUserVisibleClassName(name));
    EXPECT_EQ(qualified, isPackageQualifiedName(name));
  }
  EXPECT_EQ("lab.Pump", classNamed("lab.Pump").getID().text())
      << "an identity comes before a name users know";
  EXPECT_EQ("acme:Tank", classNamed("Tank").getID().text()) << "of several the first";
}

}  // namespace
