#include "contextdata/Dimensions.h"

std::vector<unsigned long> ownDimensions(const kxArray_tag* value) {
  if (kxHasLazyDimensions(value)) kxCompleteDimensions(value);
  if (kxHasCompactDimensions(value)) return {kxGetRowCount(value), kxGetColumnCount(value)};
  const std::size_t* first = kxGetDimensions(value);
  return {first, first + kxGetNumberOfDimensions(value)};
}
