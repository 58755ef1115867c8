#pragma once

#include <string>

#include "host/Files.h"

namespace embedded {

/// The canonical name of a folder: "file://" and its absolute path, symbolic links followed as far as it exists.
foundation::storage::vfs::CanonicalAbsoluteIRI folderName(const std::string& path);

}  // namespace embedded
