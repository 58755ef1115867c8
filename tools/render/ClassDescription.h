#pragma once

// The description of a class in its three forms, and the members in it.

#include <contextdata/KCOSContextData/MethodInfo.h>
#include <contextdata/KCOSContextData/PropertyInfo.h>

#include <string>

#include "tools/render/Description.h"
#include "tools/render/Json.h"

namespace tools {

/// Records with all their fields, under the names of the fields.
Json jsonOf(const KCOSContextData::PropertyInfo& property);
Json jsonOf(const KCOSContextData::MethodInfo& method);

/// For people: the tree of superclasses, then what each class contributes.
std::string textOf(const description::Description& description);

/// For programs: the record, field by field.
std::string jsonLineOf(const description::Description& description);

/// For graphviz: a picture of the superclasses with what each class contributes.
std::string dotOf(const description::Description& description);

}  // namespace tools
