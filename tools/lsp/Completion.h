#pragma once

#include "tools/lsp/Server.h"

namespace tools::lsp {

/// textDocument/completion
Json completion(Context& context, const Json& params);

/// completionItem/resolve: the item with its documentation, or as it is. Never an error: editors show those in windows.
Json resolve(Context& context, const Json& item);

}  // namespace tools::lsp
