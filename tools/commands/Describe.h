#pragma once

#include <CLI/App.hpp>

namespace tools {

/// The subcommand `describe`: what a class is and offers. Sets `status` when it has run.
void addDescribe(CLI::App& app, int& status);

}  // namespace tools
