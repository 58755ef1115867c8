// The library against the plain rules, on every small world and on many larger ones.

#include <contextdata/KCOSContextData.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "embedded/Host.h"
#include "host/Text.h"
#include "tests/oracle/Rules.h"

namespace {

using embedded::ClassDescription;
using embedded::Description;
using KCOSContextData::ClassInfo;
using KCOSContextData::MethodInfo;
using KCOSContextData::PropertyInfo;
using KCOSContextData::ResolvedClassID;
using oracle::Question;

struct Compared {
  explicit Compared(const Description& described) : description(described), host(described) {
    for (const ClassDescription& made : description.classes)
      records.push_back(std::make_unique<ClassInfo>(ResolvedClassID::fromKnownResolvedClassID(made.name)));
  }

  std::vector<std::string> properties(std::size_t at, const Question& question) const {
    std::vector<std::string> names;
    for (const PropertyInfo& property : records[at]->getProperties(
             {question.levels, question.kinds, accessing(question), question.includeHidden}))
      names.push_back(fl::i18n::to_string(property.name));
    return names;
  }

  std::vector<std::string> methods(std::size_t at, const Question& question) const {
    std::vector<std::string> names;
    for (const MethodInfo& method : records[at]->getMethods(
             {question.levels, accessing(question), static_cast<MethodInfo::GetContext>(question.context),
              question.constructors, question.operators, question.includeHidden}))
      names.push_back(fl::i18n::to_string(method.name) + "@" + fl::i18n::to_string(method.definingClass) +
                      (method.isStatic ? "!" : ""));
    return names;
  }

  const ClassInfo* accessing(const Question& question) const {
    return question.accessing < 0 ? nullptr : records[static_cast<std::size_t>(question.accessing)].get();
  }

  /// Returns how many answers were not empty; stops at the first difference.
  std::size_t agree(std::size_t at, const Question& question) const {
    const auto propertyAnswer = properties(at, question), methodAnswer = methods(at, question);
    EXPECT_EQ(propertyAnswer, oracle::properties(description, at, question));
    EXPECT_EQ(methodAnswer, oracle::methods(description, at, question));
    if (testing::Test::HasFailure())
      throw std::runtime_error(description.classes[at].name + ": the answers differ");
    return (propertyAnswer.empty() ? 0 : 1) + (methodAnswer.empty() ? 0 : 1);
  }

  const Description& description;
  embedded::Host host;
  embedded::Activation active{host};
  std::vector<std::unique_ptr<ClassInfo>> records;
};

const std::vector<oracle::Levels> levelLists{{}, {0}, {2}, {0, 2}, {2, 2}, {2, 2, 2}, {0, 2, 4, 2}};

/// The superclasses of C, a subset of A and B in either order.
const std::vector<std::vector<std::string>> parentsOfC{{}, {"A"}, {"B"}, {"A", "B"}, {"B", "A"}};

/// A member of the class in one of its seven forms: absent, or visible or hidden with one of three accesses.
void addMember(ClassDescription& to, int form) {
  if (form == 0) return;
  const int level = (form - 1) % 3 == 2 ? 4 : 2 * ((form - 1) % 3);
  const embedded::Access access{level,
                                level == 4 ? std::vector<std::string>{"A"} : std::vector<std::string>{}};
  const bool hidden = form > 3;
  to.properties.push_back({.name = "m", .get = access, .set = access, .hidden = hidden});
  to.methods.push_back({.name = "m", .access = access, .hidden = hidden});
}

bool isAncestor(const Description& world, std::size_t above, std::size_t of) {
  return std::ranges::any_of(world.classes[of].superclasses, [&](const std::string& name) {
    const auto superclass = static_cast<std::size_t>(name[0] - 'A');
    return superclass == above || isAncestor(world, above, superclass);
  });
}

/// What classes declare that are not above it is nothing to a class: it is asked where they declare nothing.
bool isAsked(const Description& world, std::size_t at) {
  for (std::size_t other = 0; other < world.classes.size(); ++other)
    if (other != at && !isAncestor(world, other, at) && !world.classes[other].methods.empty()) return false;
  return true;
}

std::size_t agreeOnEverySmallQuestion(const Compared& world, std::size_t at) {
  std::size_t found = 0;
  for (const auto& levels : levelLists)
    for (int accessing = -1; accessing < 3; ++accessing)
      for (const bool hidden : {false, true})
        found += world.agree(at, {.levels = levels, .accessing = accessing, .includeHidden = hidden});
  return found;
}

TEST(Oracle, AgreesOnEveryWorldOfThreeClassesWithOneMember) {
  std::size_t worlds = 0, asked = 0, found = 0;
  for (const bool derived : {false, true})
    for (const auto& parents : parentsOfC)
      for (int forms = 0; forms < 7 * 7 * 7; ++forms, ++worlds) {
        SCOPED_TRACE("world " + std::to_string(worlds));
        Description world;
        world.classes.resize(3);
        for (int at = 0, rest = forms; at < 3; ++at, rest /= 7) {
          world.classes[static_cast<std::size_t>(at)].name = std::string(1, static_cast<char>('A' + at));
          addMember(world.classes[static_cast<std::size_t>(at)], rest % 7);
        }
        if (derived) world.classes[1].superclasses = {"A"};
        world.classes[2].superclasses = parents;
        const Compared compared(world);
        for (std::size_t at = 0; at < 3; ++at)
          if (isAsked(world, at)) ++asked, found += agreeOnEverySmallQuestion(compared, at);
      }
  EXPECT_EQ(worlds, 2U * 5 * 343);
  // Of C with no, one or two classes above it; of B below A and alone; of A.
  EXPECT_EQ(asked, (2U * 7 + 3 * 49 + 5 * 343) + (5U * 49 + 5 * 7) + 10U * 7);
  EXPECT_GT(found, 50000U);
}

/// A world, and questions about it, that a seed stands for.
class Seeded {
 public:
  explicit Seeded(std::uint32_t seed) : random_(seed) {}

  Description world() {
    Description world;
    const int count = below(7) + 2;
    for (int at = 0; at < count; ++at) {
      const std::string strange[] = {"double", "table", "pkg.sub.W", "pkg.V"};
      ClassDescription& made = world.classes.emplace_back();
      made.name = at < 4 && below(3) == 0 ? strange[at] : "C" + std::to_string(at);
      for (int above = 0; above < at; ++above)
        if (below(3) == 0) made.superclasses.push_back(world.classes[static_cast<std::size_t>(above)].name);
      if (below(2) == 0) std::reverse(made.superclasses.begin(), made.superclasses.end());
      made.order = below(2) == 0 ? embedded::WalkOrder::OwnFirst : embedded::WalkOrder::InheritedFirst;
      made.enumeration = below(12) == 0;
      made.broken = below(12) == 0;
      for (int member = below(5); member > 0; --member) addMembers(world, made);
    }
    return world;
  }

  Question question(int classes) {
    return {levels(),
            below(4) == 0 ? levels() : oracle::Levels{0, 1},
            below(classes + 1) - 1,
            below(5),
            below(2) == 0,
            below(2) == 0,
            below(2) == 0};
  }

 private:
  int below(int limit) { return static_cast<int>(random_() % static_cast<std::uint32_t>(limit)); }

  oracle::Levels levels() {
    oracle::Levels all;
    for (int count = below(4); count > 0; --count) all.push_back(below(6));
    return below(2) == 0 ? all : oracle::Levels{0, 2, 2};
  }

  embedded::Access access(const Description& world) {
    embedded::Access access{below(6), {}};
    if (below(3) == 0) access.classes = {world.classes[random_() % world.classes.size()].name};
    return access;
  }

  void addMembers(const Description& world, ClassDescription& to) {
    const char* const names[] = {"a", "b", "c", "plus", "W", "sub.W", "ub.W", "double"};
    to.properties.push_back(
        {.name = names[below(4)], .get = access(world), .set = access(world), .hidden = below(4) == 0});
    to.methods.push_back({.name = names[below(8)],
                          .access = access(world),
                          .isStatic = below(2) == 0,
                          .hidden = below(4) == 0});
  }

  std::mt19937 random_;
};

TEST(Oracle, AgreesOnSeededWorlds) {
  std::size_t found = 0;
  for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Seeded seeded(seed);
    const Description description = seeded.world();
    const Compared world(description);
    const int classes = static_cast<int>(description.classes.size());
    for (int questions = 0; questions < 8; ++questions) {
      const Question question = seeded.question(classes);
      for (std::size_t at = 0; at < description.classes.size(); ++at) found += world.agree(at, question);
    }
  }
  EXPECT_GT(found, 35000U);
}

}  // namespace
