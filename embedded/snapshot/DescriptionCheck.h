#pragma once

#include <string>

#include "embedded/Description.h"

namespace embedded {

/// Throws a SnapshotError for the first fault of the description: a bad name or level, a repeated name, a
/// name of something that does not exist, a cycle of superclasses, a value whose size is not that of its
/// elements. Linear in the size of the description. `file` is only for the error.
void checkDescription(const Description& description, const std::string& file);

}  // namespace embedded
