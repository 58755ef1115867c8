#include "frontend/ValueFacts.h"

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <cstddef>
#include <vector>

namespace frontend {

namespace {

/// From here on values are objects, whose classes may say themselves what their size is.
constexpr int firstObject = 17;

template <class Extents>
std::u16string sizeText(const Extents& extents) {
  std::u16string text;
  for (const auto extent : extents) text += (text.empty() ? u"" : u"x") + wide(std::to_string(extent));
  return text;
}

/// The value's own dimensions, whatever its class says.
std::u16string ownSizeOf(const kxArray_tag* value) {
  if (kxIsA(value, "tall")) return {};
  if (kxIsOpaque(value) && kxHasLazyDimensions(value)) return {};
  if (kxHasCompactDimensions(value)) {
    return sizeText(std::vector<std::size_t>{kxGetRowCount(value), kxGetColumnCount(value)});
  }
  const std::size_t* dimensions = kxGetDimensions(value);
  return sizeText(std::vector<std::size_t>(dimensions, dimensions + kxGetNumberOfDimensions(value)));
}

}  // namespace

bool isStructure(const kxArray_tag* value) {
  const int code = kxGetClassID(value);
  return code == 2 || code == 18;
}

std::u16string sizeOf(const RequestContext& request, const kxArray_tag* value) {
  const bool runsNoCode = kxGetClassID(value) < firstObject && !kxIsOpaque(value);
  if (runsNoCode || request.options().policy == CodePolicy::Allowed)
    return sizeText(getSizeFromKxArray(value));
  return ownSizeOf(value);
}

void describeValue(const RequestContext& request, const kxArray_tag* value, Candidate& candidate) {
  candidate.type = KCOSIntrospection::getClassName(value);
  candidate.size = sizeOf(request, value);
}

}  // namespace frontend
