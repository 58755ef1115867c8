#pragma once

namespace tools {

/// How the command ends.
enum ExitCode : int { Answered = 0, NoAnswer = 1, Usage = 2, Interrupted = 130 };

}  // namespace tools
