#pragma once

#include <vector>

#include "host/Arrays.h"

/// A value's own dimensions, whatever its class says. What the host throws propagates.
inline std::vector<unsigned long> ownDimensions(const kxArray_tag* value) {
  if (kxHasLazyDimensions(value)) kxCompleteDimensions(value);
  // The compact form has to be asked about first: without the full one there is no array of extents to read.
  if (kxHasCompactDimensions(value)) return {kxGetRowCount(value), kxGetColumnCount(value)};
  const std::size_t* first = kxGetDimensions(value);
  return {first, first + kxGetNumberOfDimensions(value)};
}
