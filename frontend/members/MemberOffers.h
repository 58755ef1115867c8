#pragma once

// What stands behind a dot: the members of values and of classes.

#include "frontend/candidates/Gathering.h"
#include "frontend/inquiry/Denotation.h"

namespace frontend {

/// The candidates behind what the denotation says and a dot. False when it denotes nothing that has members.
bool offerMembers(Inquiry& inquiry, const Denotation& denotation, Gathering& gathering);

/// The methods that take part when the object is the first argument of a call.
void offerMethodsBeforeDot(Inquiry& inquiry, const Denotation& argument, Gathering& gathering);

}  // namespace frontend
