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

/// A namespace that the class system does not know: a folder on the path with functions in it.
bool isFolderNamespace(RequestContext& request, const std::u16string& name);

/// A namespace that completion leaves out, by its whole name.
bool isExcludedNamespace(const std::u16string& name);

}  // namespace frontend
