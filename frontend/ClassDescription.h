#pragma once

// What a class and its ancestors are and contribute: the record behind every form of a description.

#include <contextdata/KCOSContextData/MethodInfo.h>
#include <contextdata/KCOSContextData/PropertyInfo.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "frontend/Declarations.h"

namespace frontend {

/// The access level of a member, when it is one of those with a word.
using Level = std::optional<std::int32_t>;

struct PropertyDescription {
  KCOSContextData::PropertyInfo info;
  Level readLevel;
  Level writeLevel;
  bool isHidden = false;
};

struct MethodDescription {
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
  /// The direct superclasses, as positions in ClassTree::classes.
  std::vector<std::size_t> superclasses;
  std::vector<PropertyDescription> properties;
  /// Overloads of one name are one entry.
  std::vector<MethodDescription> methods;
  std::vector<std::u16string> enumerationMembers;
};

struct ClassTree {
  /// The described class, then its ancestors, each once, in the order in which they are met depth first.
  std::vector<ClassDescription> classes;
};

/// What a class offers at these access levels: under its superclasses only the members that reach it, because no class in
/// between defines a property of the name, or hides a method of it; neither their private members nor their constructors.
/// Runs no Korval code. `id` is the class's own identity. What the library throws propagates.
ClassTree describeClass(const KCOSContextData::ResolvedClassID& id, const std::vector<std::int32_t>& levels,
                        bool includeHidden);

}  // namespace frontend
