#pragma once

#include <string>

#include "tools/prompt/LiveSession.h"

namespace tools::prompt {

/// Why a dotted name is offered at the place it names, or is not; whole lines.
std::string explain(LiveSession& live, const std::u16string& name);

/// What is known of a dotted name, whole lines; empty when nothing is.
std::string describe(LiveSession& live, const std::u16string& name);

}  // namespace tools::prompt
