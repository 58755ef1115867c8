#pragma once

// Values of the session in JSON, written as snapshots write them.

#include <string>

#include "host/Arrays.h"
#include "tools/render/Json.h"

namespace tools {

/// null for null. A value that a snapshot would write in more than that, or of which nobody can look at the content
/// without running code, is told by {"class": name, "size": [...]}; so is what stands deeper than 100 levels, and what
/// comes after the first 100,000 elements. Runs no Korval code; asks the host, and propagates what that throws.
Json jsonOfValue(const kxArray_tag* value);

/// What code has printed, and for an expression its value, as one line.
std::string jsonLineOf(const std::u16string& output);
std::string jsonLineOf(const std::u16string& output, const kxArray_tag* value);

}  // namespace tools
