#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "frontend/Completion.h"

namespace tools::prompt {

/// Candidates as lines of a terminal of this width, best first and downwards, in as many columns as fit; beside
/// each its type and size and what else is to be known, or what it is.
std::vector<std::string> linesOf(const std::vector<frontend::Candidate>& candidates, std::size_t width);

}  // namespace tools::prompt
