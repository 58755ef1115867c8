#pragma once

// What can be told of a value without running code.

#include <string>

#include "frontend/Completion.h"
#include "frontend/RequestContext.h"
#include "host/Arrays.h"

namespace frontend {

bool isStructure(const kxArray_tag* value);

/// "2x3", or empty when it is not known. Objects are asked for their size when the policy lets code run.
std::u16string sizeOf(const RequestContext& request, const kxArray_tag* value);

/// Type and size of a value, as far as they can be told.
void describeValue(const RequestContext& request, const kxArray_tag* value, Candidate& candidate);

}  // namespace frontend
