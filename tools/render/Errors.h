#pragma once

// What went wrong, for people and as JSON.

#include <string>

#include "embedded/Host.h"
#include "tools/render/Json.h"

namespace tools {

/// What the handler that calls this has caught: its C++ type and its fields.
Json jsonOfCurrentException();
/// The same in one line.
std::string describeCurrentException();

/// "FILE: POINTER: reason [code]", without what is empty.
std::string describe(const embedded::SnapshotError& error);
Json jsonOf(const embedded::SnapshotError& error);

}  // namespace tools
