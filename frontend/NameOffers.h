#pragma once

// What can stand where a name begins.

#include "frontend/CandidateList.h"

namespace frontend {

/// Variables, functions, classes, namespaces, packages, code files and class folders of the current folder, built-in
/// functions.
void offerNames(RequestContext& request, CandidateList& candidates);

/// What can be called through a handle: no variables.
void offerFunctions(RequestContext& request, CandidateList& candidates);

}  // namespace frontend
