#pragma once

// Values that fit, names of arguments, and names of files inside texts.

#include "frontend/CandidateList.h"
#include "frontend/CursorContext.h"

namespace frontend {

/// The values that the property may take which is assigned at the position, or compared.
void offerTargetValues(RequestContext& request, const CursorContext& context, CandidateList& candidates);

/// The values of the argument that is typed at the position, and names of arguments.
void offerArguments(RequestContext& request, const CursorContext& context, CandidateList& candidates);

/// What the folder holds in which the text at the position ends: "" is the current one, "@Pump/" one on the search path.
void offerFilesInText(const std::u16string& folder, CandidateList& candidates);

}  // namespace frontend
