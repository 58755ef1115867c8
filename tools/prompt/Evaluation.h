#pragma once

#include <string>

#include "tools/prompt/LiveSession.h"

namespace tools::prompt {

/// How statements ended.
enum class Ending { Fine, Failed, Interrupted };

/// Runs statements in the session, prints what they print as it comes, and tells their error. `firstLine` is the number of
/// their first line, with which errors count.
Ending evaluate(LiveSession& live, const std::u16string& text, int firstLine);

/// There is no code yet, but further lines can make it some: a block or a bracket is open, or "..." ends the last line.
/// The text ends with a line's end.
bool isUnfinished(const std::u16string& text);

}  // namespace tools::prompt
