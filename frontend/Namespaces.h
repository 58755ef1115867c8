#pragma once

// What namespaces and packages hold.

#include <string>

#include "frontend/CandidateList.h"

namespace frontend {

void offerNamespace(RequestContext& request, const std::u16string& name, CandidateList& candidates);
void offerPackage(RequestContext& request, const std::u16string& name, CandidateList& candidates);

/// A namespace that the class system does not know: a folder on the path with functions in it.
bool isFolderNamespace(RequestContext& request, const std::u16string& name);

/// A namespace that completion leaves out, by its whole name.
bool isExcludedNamespace(const std::u16string& name);

}  // namespace frontend
