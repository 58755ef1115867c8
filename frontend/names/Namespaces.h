#pragma once

// What namespaces and packages hold.

#include <string>

#include "frontend/candidates/Gathering.h"

namespace frontend {

void offerNamespace(Inquiry& inquiry, const std::u16string& name, Gathering& gathering);
void offerPackage(Inquiry& inquiry, const std::u16string& name, Gathering& gathering);

/// A namespace that the class system does not know: a folder on the path with functions in it.
bool isFolderNamespace(Inquiry& inquiry, const std::u16string& name);

/// A namespace that completion leaves out, by its whole name.
bool isExcludedNamespace(const std::u16string& name);

}  // namespace frontend
