#pragma once

// give() makes JSON of a value: what take() makes the same value of. There is one for every type that a
// description is made of.

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "embedded/Description.h"
#include "embedded/snapshot/Writer.h"

namespace embedded::snapshot {

Json give(Writer& writer, bool value);
Json give(Writer& writer, int value);
Json give(Writer& writer, std::size_t value);
Json give(Writer& writer, double value);
Json give(Writer& writer, const std::string& value);
Json give(Writer& writer, const std::u16string& value);
Json give(Writer& writer, WalkOrder value);
Json give(Writer& writer, DimensionForm value);
Json give(Writer& writer, const Access& value);

Json give(Writer& writer, const AttributeDescription& value);
/// An extent of a declared size: a number, or ":" for any.
Json give(Writer& writer, const std::optional<std::size_t>& value);
Json give(Writer& writer, const ValidationDescription& value);
Json give(Writer& writer, const OptimizedStorage& value);
Json give(Writer& writer, const PropertyDescription& value);
Json give(Writer& writer, const MethodDescription& value);
Json give(Writer& writer, const EnumerationMemberDescription& value);
Json give(Writer& writer, const AttributeNames& value);
Json give(Writer& writer, const std::array<AttributeNames, 4>& value);
Json give(Writer& writer, const ClassDescription& value);
Json give(Writer& writer, ArgumentDescription::Kind value);
Json give(Writer& writer, const ArgumentDescription& value);
Json give(Writer& writer, const ArgumentsDescription& value);
Json give(Writer& writer, const FunctionDescription& value);
Json give(Writer& writer, const PackageDescription& value);
Json give(Writer& writer, const ForeignClassDescription& value);

Json give(Writer& writer, const ValueDescription& value);
Json give(Writer& writer, const VariableDescription& value);

Json give(Writer& writer, PathItemDescription::Kind value);
Json give(Writer& writer, const PathItemDescription& value);
Json give(Writer& writer, const ActiveScopeDescription& value);
Json give(Writer& writer, const DebuggerDescription& value);
Json give(Writer& writer, const ScopesDescription& value);
Json give(Writer& writer, const Description& value);

/// Without a value: null.
template <class Value>
Json give(Writer& writer, const std::optional<Value>& value) {
  return value ? give(writer, *value) : Json();
}

template <class List>
Json giveList(Writer& writer, const List& list) {
  writer.begin();
  Json result = Json::array();
  std::size_t index = 0;
  for (const auto& element : list) {
    const Writer::Step step(writer, index++);
    result.push_back(give(writer, element));
  }
  return result;
}

template <class Element>
Json give(Writer& writer, const std::vector<Element>& list) {
  return giveList(writer, list);
}

}  // namespace embedded::snapshot
