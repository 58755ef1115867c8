#pragma once

#include "tools/lsp/Server.h"

namespace tools::lsp {

/// textDocument/documentSymbol: functions with what they give values to, or the variables of a script.
Json documentSymbols(Context& context, const Json& params);

/// workspace/symbol: functions, classes and code files of the session whose names fit a text.
Json workspaceSymbols(Context& context, const Json& params);

}  // namespace tools::lsp
