#pragma once

#include "frontend/Hover.h"
#include "tools/serve/Message.h"

namespace tools::serve {

/// What is known of a name, as the protocol's MarkupContent.
Json contentOf(const frontend::Hover& hover, bool markdown);

}  // namespace tools::serve
