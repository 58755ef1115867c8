#pragma once

#include <CLI/App.hpp>

namespace tools {

/// The subcommand `eval`: runs an expression or a script in a session. Sets `status` when it has run.
void addEval(CLI::App& app, int& status);

}  // namespace tools
