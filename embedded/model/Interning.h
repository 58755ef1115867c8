#pragma once

// The process's table of interned names.

#include <string_view>

#include "host/Names.h"

namespace embedded {

/// The handle of a name; the null name for an empty one.
kcos::COSInternedName interned(std::string_view name);

/// The same, but the null name too for a text that nobody has interned: asking leaves nothing behind.
kcos::COSInternedName alreadyInterned(std::string_view name);

}  // namespace embedded
