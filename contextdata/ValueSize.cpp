#include <contextdata/Workspace/Values.h>

#include <boost/numeric/conversion/cast.hpp>
#include <cmath>

#include "contextdata/Dimensions.h"
#include "host/Classes.h"
#include "host/Interpreter.h"

namespace {

using Extents = std::vector<unsigned long>;

const char* sizeMethod(const kxArray_tag* value) {
  static const std::string customSize = "korval.mixin.internal.CustomSizeString";
  return omIsKCOS(value) && kxIsA(value, customSize.c_str()) ? "sizeAsDouble" : "size";
}

/// The extents that a size method answers; none when its answer says nothing. An extent that is no count throws.
Extents extentsOf(const kxArray_tag* answer) {
  if (answer == nullptr || kxGetClassID(answer) != StorageCode::DoubleArray || kxIsEmpty(answer)) return {};
  const std::size_t count = kxGetNumberOfElements(answer);
  const double* numbers = count == 0 ? nullptr : kxGetDoubles(answer);
  Extents extents;
  for (std::size_t index = 0; index < count; ++index) {
    if (std::isnan(numbers[index])) return {};
    extents.push_back(boost::numeric_cast<unsigned long>(numbers[index]));
  }
  return extents;
}

}  // namespace

std::vector<unsigned long> getSizeFromKxArray(const kxArray_tag* value) {
  if (value == nullptr || kxIsA(value, "tall")) return {};
  if (!StorageCode::isSizedByClass(kxGetClassID(value))) return ownDimensions(value);
  const char* method = sizeMethod(value);
  Extents extents;
  try {
    extents = extentsOf(makeSharedPtr(inCallMethodSingleInputSingleOutput(value, method, 1)).get());
  } catch (...) {
    return {};
  }
  return extents.empty() ? ownDimensions(value) : extents;
}
