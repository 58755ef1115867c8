#pragma once

#include <CLI/App.hpp>

namespace tools {

/// The subcommand `query`: a request per line in, an answer per line out. Sets `status` when it has run.
void addQuery(CLI::App& app, int& status);

}  // namespace tools
