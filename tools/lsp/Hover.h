#pragma once

#include "tools/lsp/Server.h"

namespace tools::lsp {

/// textDocument/hover
Json hover(Context& context, const Json& params);

}  // namespace tools::lsp
