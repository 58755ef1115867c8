#pragma once

// What can stand where a name begins, and what the namespaces and packages among it hold.

#include <string>

#include "frontend/CandidateList.h"

namespace frontend {

/// Variables, functions, classes, namespaces, packages, code files and class folders of the current folder, built-in
/// functions.
void offerNames(RequestContext& request, CandidateList& candidates);

/// What can be called through a handle: no variables.
void offerFunctions(RequestContext& request, CandidateList& candidates);

/// Where a statement begins.
void offerKeywords(CandidateList& candidates);

/// What a namespace or a package holds.
void offerNamespace(RequestContext& request, const std::u16string& name, CandidateList& candidates);
void offerPackage(RequestContext& request, const std::u16string& name, CandidateList& candidates);

/// Do functions that are not hidden have dotted names that begin so? The class system knows no namespaces that hold nothing
/// but folders of the path, or built-in functions.
bool holdsFunctions(RequestContext& request, const std::u16string& name);

/// A namespace that completion leaves out, by its whole name.
bool isExcludedNamespace(const std::u16string& name);

}  // namespace frontend
