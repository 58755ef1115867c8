#pragma once

// What stands after a dot: the members of values and of classes.

#include "frontend/CandidateList.h"
#include "frontend/Resolution.h"

namespace frontend {

/// The candidates after what the resolution says and a dot. False when that is nothing that has members.
bool offerMembers(RequestContext& request, const Resolution& resolution, CandidateList& candidates);

/// The methods that take part when the object is the first argument of a call.
void offerMethodsBeforeDot(RequestContext& request, const Resolution& argument, CandidateList& candidates);

}  // namespace frontend
