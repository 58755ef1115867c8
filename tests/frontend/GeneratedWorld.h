#pragma once

#include <cstdint>

#include "embedded/Description.h"

namespace generated {

/// Classes that derive from it complete no methods behind the dot. Every generated world has it.
inline constexpr const char* mixin = "korval.mixin.internal.indexing.DisallowCompletionOfDotMethodNames";

/// A world that a seed stands for: a few classes, and for each that can have one an object, whose name is "o" and the
/// first two letters of the class's. Members are called a, b, c, plus, subsref or like their class.
embedded::Description world(std::uint32_t seed);

}  // namespace generated
