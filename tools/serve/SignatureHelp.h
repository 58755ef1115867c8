#pragma once

#include "tools/serve/Server.h"

namespace tools::serve {

/// textDocument/signatureHelp
Json signatureHelp(Context& context, const Json& params);

}  // namespace tools::serve
