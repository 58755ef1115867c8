#pragma once

#include <CLI/App.hpp>

namespace tools {

/// The subcommand `prompt`: a session to work in. Sets `status` when it has run.
void addPrompt(CLI::App& app, int& status);

}  // namespace tools
