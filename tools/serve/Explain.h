#pragma once

#include "tools/serve/Server.h"

namespace tools::serve {

/// contextdata/explain: {"textDocument", "position", "name"}; why completion there offers the name, or does not.
Json explain(Context& context, const Json& params);

}  // namespace tools::serve
