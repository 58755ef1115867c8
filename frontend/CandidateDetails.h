#pragma once

// What a candidate says beside its name: what can be told of a value, of a property and of a method without running code.

#include <cstddef>
#include <string>
#include <vector>

#include "frontend/Completion.h"
#include "frontend/OfferedMembers.h"
#include "frontend/RequestContext.h"
#include "host/Arrays.h"

namespace frontend {

bool isStructure(const kxArray_tag* value);

/// A value's own dimensions, in whichever form it holds them. The host refuses to tell lazy ones.
std::vector<std::size_t> heldDimensions(const kxArray_tag* value);

/// "2x3", or empty when it is not known. Objects are asked for their size when the policy lets code run.
std::u16string sizeOf(const RequestContext& request, const kxArray_tag* value);

/// Type and size of a value, as far as they can be told.
void describeValue(const RequestContext& request, const kxArray_tag* value, Candidate& candidate);

void describeMethod(const OfferedMethod& method, Candidate& candidate);

/// `value` may be null: then the declaration has to do.
void describeProperty(const RequestContext& request, const OfferedProperty& property,
                      const kxArray_tag* value, Candidate& candidate);

}  // namespace frontend
