#pragma once

// Structures, which have two shapes: of one element and of several.

#include "embedded/snapshot/Shape.h"

namespace embedded::snapshot {

/// {"struct": {"a": 1}}: one element.
const Shape<StructureArray>& oneStructure();
/// {"structs": [{"a": 1}, {"a": 2}]}: several; without any, "fields" names the fields.
const Shape<StructureArray>& severalStructures();

/// In the shorter of both.
Json write(Writer& writer, const StructureArray& array);

/// Is this size the one that a list of so many elements has without any?
bool isRow(const std::vector<std::size_t>& size, std::size_t count);

}  // namespace embedded::snapshot
