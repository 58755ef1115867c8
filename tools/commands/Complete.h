#pragma once

#include <CLI/App.hpp>

namespace tools {

/// The subcommand `complete`: what can follow a variable or a class and a dot. Sets `status` when it has run.
void addComplete(CLI::App& app, int& status);

}  // namespace tools
