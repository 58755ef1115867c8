#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/Files.h"

namespace embedded {

/// The canonical name of a folder: "file://" and its absolute path, symbolic links followed as far as it exists.
foundation::storage::vfs::CanonicalAbsoluteIRI folderName(const std::filesystem::path& path);

/// The same of a folder that is known by its own name: when that is a link, it is not followed.
foundation::storage::vfs::CanonicalAbsoluteIRI namedFolder(const std::filesystem::path& path);

/// What a folder holds, in ascending order. One that cannot be read holds nothing.
std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& folder);

/// The folders "@name" in a folder of the path, in ascending order: each is the folder of a class and of a package of
/// the older object system.
std::vector<std::filesystem::path> classFoldersIn(const std::filesystem::path& folder);

}  // namespace embedded
