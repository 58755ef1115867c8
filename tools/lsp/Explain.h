#pragma once

#include "tools/lsp/Server.h"

namespace tools::lsp {

/// contextdata/explain: {"textDocument", "position", "name"}; why completion there offers the name, or does not.
Json explain(Context& context, const Json& params);

}  // namespace tools::lsp
