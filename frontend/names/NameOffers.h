#pragma once

// What can stand where a name begins.

#include "frontend/candidates/Gathering.h"

namespace frontend {

/// Variables, functions, classes, namespaces, packages, code files and class folders of the current folder, built-in
/// functions.
void offerNames(Inquiry& inquiry, Gathering& gathering);

/// What can be called through a handle: no variables.
void offerFunctions(Inquiry& inquiry, Gathering& gathering);

}  // namespace frontend
