#pragma once

// A description in its three forms.

#include <string>
#include <vector>

#include "tools/render/Description.h"
#include "tools/render/JsonText.h"

namespace tools::description {

/// The words for the access levels, by number.
const std::vector<std::string>& levelWords();

/// For people: the tree of superclasses, then what each class contributes.
std::string textOf(const Description& description);

/// For programs: the record, field by field.
Json jsonOf(const Description& description);

/// For graphviz: a picture of the superclasses with what each class contributes.
std::string dotOf(const Description& description);

}  // namespace tools::description
