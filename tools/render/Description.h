#pragma once

// What a class is and offers, as the library tells it: the record behind every form of a description.

#include <contextdata/KCOSContextData/MethodInfo.h>
#include <contextdata/KCOSContextData/PropertyInfo.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tools::description {

/// The access levels that members are looked for at; 0 is public, 2 private, 5 constant.
inline constexpr std::int32_t highestLevel = 5;

/// The access level of a member, when it has one of those.
using Level = std::optional<std::int32_t>;

struct Property {
  KCOSContextData::PropertyInfo info;
  Level readLevel;
  Level writeLevel;
  bool isHidden = false;
};

struct Method {
  KCOSContextData::MethodInfo info;
  Level level;
  bool isHidden = false;
  bool isConstructor = false;
  bool isOperatorOverload = false;
};

/// A class and what it contributes: the members that it defines itself, in the order of their declaration.
struct ClassDescription {
  std::u16string name;
  /// The name by which the class system knows it.
  std::string classId;
  /// A class that fails its check keeps its own members to itself.
  bool isValid = true;
  bool isEnumeration = false;
  /// The direct superclasses, as positions in Description::classes.
  std::vector<std::size_t> superclasses;
  std::vector<Property> properties;
  /// Overloads of one name are one entry.
  std::vector<Method> methods;
  std::vector<std::u16string> enumerationMembers;
};

struct Description {
  /// The described class, then its ancestors, each once, in the order in which they are met depth first.
  std::vector<ClassDescription> classes;
};

/// What members are wanted.
struct Options {
  std::vector<std::int32_t> levels{0};
  bool includeHidden = false;
};

/// What a class offers: under its superclasses only the members that reach it, because no class in between defines
/// a property of the name, or hides a method of it; neither their private members nor their constructors. Runs no Korval code.
/// `id` is the class's own identity. What the library lets out passes.
Description describe(const KCOSContextData::ResolvedClassID& id, const Options& options);

}  // namespace tools::description
