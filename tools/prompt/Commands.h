#pragma once

#include <string>

#include "tools/prompt/LiveSession.h"

namespace tools::prompt {

/// What a prompt understands beside code.
enum class CommandEnding { Fine, Failed, Quit };

/// Does the line ask the prompt for something, instead of being code?
bool isCommand(const std::u16string& line);

/// Does what the line asks for, and prints its answer or its error.
CommandEnding runCommand(LiveSession& live, const std::u16string& line);

}  // namespace tools::prompt
