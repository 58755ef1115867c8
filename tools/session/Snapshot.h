#pragma once

// Loading the session that a command works on.

#include <memory>
#include <string>

#include "embedded/Host.h"
#include "tools/render/JsonText.h"

namespace tools {

/// The host of a snapshot file, with a progress bar on the terminal when loading takes longer than a second.
/// Throws embedded::SnapshotError.
std::unique_ptr<embedded::Host> loadSnapshot(const std::string& file);

/// "FILE: POINTER: reason [code]", without what is empty.
std::string describe(const embedded::SnapshotError& error);
Json jsonOf(const embedded::SnapshotError& error);

}  // namespace tools
