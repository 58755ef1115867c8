#include "bench/Worlds.h"

#include <array>
#include <utility>

namespace bench {

using embedded::ClassDescription;
using embedded::Description;
using embedded::ValueDescription;

std::string rowName(const std::string& work, Size size) {
  return work + "/" + std::to_string(size.members) + "/" + std::to_string(size.depth);
}

std::string memberName(std::size_t number) {
  constexpr std::array<std::size_t, 13> lengths{12, 6, 18, 9, 15, 7, 17, 10, 14, 8, 16, 11, 13};
  const std::size_t length = lengths[number % lengths.size()];
  std::string name;
  // The number in letters makes it distinct, the rest is there for the length.
  for (std::size_t rest = number; name.size() < 5; rest /= 26) name += static_cast<char>('a' + rest % 26);
  while (name.size() < length) name += static_cast<char>('A' + name.size());
  return name;
}

namespace {

/// The names that each class of the chain declares, from the root on.
std::vector<std::vector<std::string>> namesByClass(Size size) {
  std::vector<std::vector<std::string>> all;
  const std::size_t perClass = size.members / size.depth;
  std::size_t next = 0;
  for (std::size_t at = 0; at < size.depth; ++at) {
    std::vector<std::string> names;
    if (at > 0) names.assign(all.back().end() - static_cast<std::ptrdiff_t>(perClass / 4), all.back().end());
    while (names.size() < perClass) names.push_back(memberName(next++));
    all.push_back(std::move(names));
  }
  return all;
}

template <class AddMember>
Description chain(Size size, AddMember addMember) {
  Description world;
  std::string above;
  for (const std::vector<std::string>& names : namesByClass(size)) {
    ClassDescription& made = world.classes.emplace_back();
    made.name =
        world.classes.size() == size.depth ? lastClass : "bench.C" + std::to_string(world.classes.size());
    if (!above.empty()) made.superclasses = {above};
    for (const std::string& name : names) addMember(made, name);
    above = made.name;
  }
  world.workspace.push_back(
      {"object", ValueDescription{embedded::ObjectValue{lastClass, {}, {}, {}, false}}});
  return world;
}

void addProperty(ClassDescription& made, const std::string& name) {
  auto& property = made.properties.emplace_back();
  property.name = name;
  property.type = "double";
  // Every fourth one with a declared size.
  if (made.properties.size() % 4 == 0) property.validation = {{"double", {1, std::nullopt}, {}}};
}

void addMethod(ClassDescription& made, const std::string& name) { made.methods.emplace_back().name = name; }

}  // namespace

Description chainOfProperties(Size size) { return chain(size, addProperty); }
Description chainOfMethods(Size size) { return chain(size, addMethod); }

Description chainOfMembers(Size size) {
  return chain(size, [](ClassDescription& made, const std::string& name) {
    // By the name, so that what is redeclared stays what it is.
    (name[0] % 2 == 0 ? addProperty : addMethod)(made, name);
  });
}

Description nestedStructure(std::size_t fields, std::size_t levels) {
  ValueDescription value{embedded::DoubleArray{.size = {}, .elements = {1}}};
  for (std::size_t level = 0; level < levels; ++level) {
    embedded::StructureArray structure;
    for (std::size_t field = 0; field + 1 < fields; ++field) {
      structure.fields.push_back(memberName(field));
      structure.values.push_back({embedded::DoubleArray{.size = {}, .elements = {1}}});
    }
    structure.fields.push_back("next");
    structure.values.push_back(std::move(value));
    value = ValueDescription{std::move(structure)};
  }
  Description world;
  world.workspace.push_back({"structure", std::move(value)});
  return world;
}

}  // namespace bench
