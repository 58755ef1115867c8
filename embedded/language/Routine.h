#pragma once

#include "embedded/language/SyntaxTree.h"
#include "embedded/model/Routine.h"

namespace embedded {

/// The routine's text, parsed at its first use; throws CodeError.
const Unit& unitOf(const Routine& routine);

/// The function of that name among those of the text, or null.
const FunctionSyntax* localFunctionOf(const Routine& routine, const std::string& name);

}  // namespace embedded
