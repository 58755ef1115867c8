#pragma once

#include "tools/lsp/Server.h"

namespace tools::lsp {

/// contextdata/trace: {"method", "params"} of another request; its result, and what it asked of the host.
Json trace(Context& context, const Json& params);

}  // namespace tools::lsp
