#pragma once

#include "tools/serve/Server.h"

namespace tools::serve {

/// contextdata/trace: {"method", "params"} of another request; its result, and what it asked of the host.
Json trace(Context& context, const Json& params);

}  // namespace tools::serve
