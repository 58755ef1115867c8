#include "tests/frontend/GeneratedWorld.h"

#include <algorithm>
#include <random>
#include <string>

namespace generated {

namespace {

using embedded::ClassDescription;
using embedded::Description;

class Seeded {
 public:
  explicit Seeded(std::uint32_t seed) : random_(seed) {}

  Description world() {
    Description world;
    for (int at = 0, count = below(4) + 2; at < count; ++at) addClass(world, at);
    world.classes.push_back({.name = mixin});
    for (const ClassDescription& made : world.classes) {
      if (made.broken) continue;
      embedded::ObjectValue object{.className = made.name, .properties = {}};
      if (made.enumeration) object.member = "m";
      world.workspace.push_back({"o" + made.name.substr(0, 2), {object}});
    }
    return world;
  }

 private:
  int below(int limit) { return static_cast<int>(random_() % static_cast<std::uint32_t>(limit)); }
  bool oneIn(int count) { return below(count) == 0; }

  void addClass(Description& world, int at) {
    ClassDescription made;
    made.name = at == 0 && oneIn(8) ? "table" : "C" + std::to_string(at);
    for (const ClassDescription& above : world.classes)
      if (oneIn(2) && !above.enumeration) made.superclasses.push_back(above.name);
    if (oneIn(10)) made.superclasses.push_back(mixin);
    made.order = oneIn(2) ? embedded::WalkOrder::OwnFirst : embedded::WalkOrder::InheritedFirst;
    made.enumeration = oneIn(8);
    made.broken = !made.enumeration && oneIn(10);
    if (made.enumeration) made.members = {{.name = "m"}, {.name = "h", .hidden = true}};
    for (int member = below(5); member > 0; --member) addMembers(world, made);
    world.classes.push_back(made);
  }

  void addMembers(const Description& world, ClassDescription& to) {
    static const char* const names[] = {"a", "b", "c", "plus", "subsref"};
    embedded::PropertyDescription property{.name = names[below(3)]};
    property.get = access(world, to);
    property.set = oneIn(3) ? embedded::Access{5, {}} : access(world, to);
    property.hidden = oneIn(3);
    if (oneIn(4)) property.getter = "1";
    const bool isKnown =
        std::ranges::any_of(to.properties, [&](const auto& other) { return other.name == property.name; });
    if (!isKnown) to.properties.push_back(property);
    to.methods.push_back({.name = oneIn(6) ? to.name : names[below(5)],
                          .access = access(world, to),
                          .isStatic = oneIn(3),
                          .hidden = oneIn(3)});
  }

  embedded::Access access(const Description& world, const ClassDescription& here) {
    static const int levels[] = {0, 0, 0, 1, 2, 2, 4, 3};
    embedded::Access access{levels[below(8)], {}};
    if (access.level == 4 || oneIn(6))
      access.classes = {world.classes.empty() ? here.name
                                              : world.classes[random_() % world.classes.size()].name};
    return access;
  }

  std::mt19937 random_;
};

}  // namespace

embedded::Description world(std::uint32_t seed) { return Seeded(seed).world(); }

}  // namespace generated
