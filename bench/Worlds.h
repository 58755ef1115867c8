#pragma once

// The sessions that are measured: a chain of classes with many members, and what its members are, as plain lists.

#include <cstddef>
#include <string>
#include <vector>

#include "embedded/Description.h"

namespace bench {

/// How big a session is.
struct Size {
  std::size_t members = 0;
  std::size_t depth = 1;
};

/// "work/members/depth"
std::string rowName(const std::string& work, Size size);

/// Distinct names of 6 to 18 characters, 12 on average.
std::string memberName(std::size_t number);

/// The most derived class of the chain.
inline const char* const lastClass = "bench.Last";

/// The chain: `depth` classes, each derived from the one before, with `members` properties or methods in all. Each below the
/// root redeclares a quarter of the names of the one above. An object of the last one is in the variable "object".
embedded::Description chainOfProperties(Size size);
embedded::Description chainOfMethods(Size size);
/// Half of the members are properties, half methods.
embedded::Description chainOfMembers(Size size);

/// A structure of `fields` fields, each of which is the structure below it in the field "next", `levels` deep; in the
/// variable "structure".
embedded::Description nestedStructure(std::size_t fields, std::size_t levels);

}  // namespace bench
