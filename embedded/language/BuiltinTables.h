#pragma once

#include <span>

#include "embedded/language/Builtins.h"

namespace embedded {

std::span<const NamedBuiltin> builtinsOnValues();
std::span<const NamedBuiltin> builtinsOnText();
std::span<const NamedBuiltin> builtinsOnObjects();

}  // namespace embedded
