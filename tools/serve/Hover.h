#pragma once

#include "tools/serve/Server.h"

namespace tools::serve {

/// textDocument/hover
Json hover(Context& context, const Json& params);

}  // namespace tools::serve
