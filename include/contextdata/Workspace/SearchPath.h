#pragma once

// What folders on the search path hold, and which functions are built in.

#include <contextdata/Export.h>

#include <string>
#include <unordered_set>
#include <vector>

/// Appends the names of the entries of one kind: "classes" (class folders, without their "@"), ".k" (code
/// files, with their extension), anything else (compiled files, whole names ending in ".kexa64").
///
/// With an empty `folder` the current folder is listed; otherwise every folder of that name on the search
/// path, in path order, so that a name can repeat. Folders of that name in the current folder count only
/// while it is the current one. A folder that does not exist holds nothing.
///
/// What listing the current folder, and getting the search path, throws propagates. While the search path is
/// visited only the interrupt propagates; any other exception means that nothing is appended. Runs no Korval
/// code. Cost: one listing per folder.
CONTEXTDATA_API void getWhatList(const std::u16string& folder, std::vector<std::u16string>& names,
                                 const std::string& kind);

/// The documented built-in functions. Every exception propagates. Runs no Korval code.
CONTEXTDATA_API std::unordered_set<std::u16string> getBuiltinFunctionNames();
