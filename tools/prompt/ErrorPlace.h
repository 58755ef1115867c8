#pragma once

#include <string>

#include "embedded/Host.h"

namespace tools::prompt {

/// An error of code that was typed, whole lines: the line it is in with a caret under the place, when it is in the text, and
/// place, message and identifier. The first line of the text has this number.
std::string describe(const embedded::CodeFailure& failure, const std::u16string& text, int firstLine);

}  // namespace tools::prompt
