#pragma once

#include "tools/lsp/Server.h"

namespace tools::lsp {

/// textDocument/signatureHelp
Json signatureHelp(Context& context, const Json& params);

}  // namespace tools::lsp
