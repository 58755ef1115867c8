#pragma once

#include "tools/serve/Server.h"

namespace tools::serve {

/// textDocument/completion
Json completion(Context& context, const Json& params);

}  // namespace tools::serve
