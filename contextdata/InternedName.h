#pragma once

#include <string>

#include "host/Names.h"

/// The interned form of a name; the null name for an empty one, which the class system does not intern.
inline kcos::COSInternedName internedName(const std::string& name) {
  return name.empty() ? kcos::COSInternedName() : kcos::internal::makeInterned(name);
}
