#pragma once

#include <CLI/App.hpp>
#include <string>

#include "frontend/Explanation.h"
#include "tools/render/JsonText.h"

namespace tools {

/// The subcommand `explain`: why a name is offered at a place in a line of code, or is not. Sets `status` when it has run.
void addExplain(CLI::App& app, int& status);

/// For people, whole lines.
std::string textOf(const frontend::Explanation& explanation);
Json jsonOf(const frontend::Explanation& explanation);

}  // namespace tools
