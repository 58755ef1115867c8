#pragma once

#include "frontend/Hover.h"
#include "tools/lsp/Message.h"

namespace tools::lsp {

/// What is known of a name, as the protocol's MarkupContent.
Json contentOf(const frontend::Hover& hover, bool markdown);

}  // namespace tools::lsp
