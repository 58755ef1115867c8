#pragma once

#include <CLI/App.hpp>

namespace tools {

/// The subcommand `serve`: a language server on standard input and output. Sets `status` when it has run.
void addServe(CLI::App& app, int& status);

}  // namespace tools
