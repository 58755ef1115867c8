#pragma once

#include <vector>

#include "host/Arrays.h"

/// A value's own dimensions, whatever its class says. What the host throws passes.
std::vector<unsigned long> ownDimensions(const kxArray_tag* value);
