// What lists of names allocate: the names that are too long to stand in a string itself, and little else.

#include "tests/support/Allocations.h"

#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/VariableMethods.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/Members.h"
#include "tests/support/World.h"

namespace {

using namespace KCOSContextData;
using Names = std::vector<std::u16string>;

/// A class over another one that declares the same members: short, long and hidden ones, some static.
embedded::Description twoClasses(std::size_t members) {
  embedded::Description world;
  for (const char* name : {"Base", "Own"}) {
    embedded::ClassDescription& made = world.classes.emplace_back();
    made.name = name;
    if (*name == 'O') made.superclasses = {"Base"};
    for (std::size_t at = 0; at < members; ++at) {
      const std::string member = (at % 3 == 0 ? "m" : "memberWithAName") + std::to_string(at);
      made.properties.emplace_back().name = member;
      if (at % 5 == 0) made.properties.back().set.level = kcos::ConstantAccess;
      made.methods.emplace_back().name = member;
      made.methods.back().isStatic = at % 4 == 0;
      made.methods.back().hidden = at % 7 == 0;
    }
  }
  embedded::ObjectValue object;
  object.className = "Own";
  world.workspace.push_back({"object", {std::move(object)}});
  return world;
}

TEST(Allocations, OfListsAreThoseOfTheirNames) {
  constexpr std::size_t members = 600;
  World world(twoClasses(members));
  const auto id = ResolvedClassID::fromKnownResolvedClassID(std::string("Own"));
  const auto object = GetValueFromCurrentWorkspace(u"object");
  bool flag = false;
  const std::map<std::string, std::function<void(Names&)>> lists{
      {"properties", [&](Names& names) { getClassPropertyNames(id, names, flag); }},
      {"constants", [&](Names& names) { getClassConstantPropertyNames(id, names, flag); }},
      {"methods", [&](Names& names) { getClassMethodNames(id, names, flag); }},
      {"static methods", [&](Names& names) { getClassStaticMethodNames(id, names, flag); }},
      {"after a dot", [&](Names& names) { names = getMethodsForWSVariable(u"object", object); }}};
  for (const auto& [list, ask] : lists) {
    SCOPED_TRACE(list);
    Names names;
    // Once before, for what is made at the first question.
    ask(names);
    names = Names();
    const std::size_t before = allocations::count();
    ask(names);
    const std::size_t made = allocations::count() - before;
    const std::size_t inside = std::u16string().capacity();
    const auto outside = static_cast<std::size_t>(
        std::ranges::count_if(names, [&](const std::u16string& name) { return name.size() > inside; }));
    ASSERT_GT(outside, 50U);
    // One for each doubling of the list; of methods also those that remember which names have come.
    EXPECT_LE(made, outside + 12 + members / 32);
    EXPECT_GE(made, outside);
  }
}

}  // namespace
