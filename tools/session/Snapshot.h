#pragma once

// Loading the session that a command works on.

#include <memory>
#include <string>

#include "embedded/Host.h"

namespace tools {

/// The host of a snapshot file, with a progress bar on the terminal when loading takes longer than a second.
/// Throws embedded::SnapshotError.
std::unique_ptr<embedded::Host> loadSnapshot(const std::string& file);

}  // namespace tools
