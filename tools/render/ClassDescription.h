#pragma once

// The description of a class in its three forms, and the members in it.

#include <string>

#include "frontend/ClassDescription.h"
#include "tools/render/Json.h"

namespace tools {

/// For people: the tree of superclasses, then what each class contributes.
std::string textOf(const frontend::ClassTree& tree);

/// For graphviz: a picture of the superclasses with what each class contributes.
std::string dotOf(const frontend::ClassTree& tree);

// For programs: in Json.cpp.

/// Records with all their fields, under the names of the fields.
Json jsonOf(const KCOSContextData::PropertyInfo& property);
Json jsonOf(const KCOSContextData::MethodInfo& method);
/// The whole description, field by field.
std::string jsonLineOf(const frontend::ClassTree& tree);

}  // namespace tools
