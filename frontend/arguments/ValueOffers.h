#pragma once

// Values that fit, names of arguments, and names of files inside texts.

#include "frontend/candidates/Gathering.h"
#include "frontend/line/Position.h"

namespace frontend {

/// The values that the property may take which is assigned at the position, or compared.
void offerTargetValues(Inquiry& inquiry, const Position& position, Gathering& gathering);

/// The values of the argument that is typed at the position, and names of arguments.
void offerArguments(Inquiry& inquiry, const Position& position, Gathering& gathering);

/// What the folder holds in which the text at the position ends: "" is the current one, "@Pump/" one on the search path.
void offerFilesInText(const std::u16string& folder, Gathering& gathering);

}  // namespace frontend
