#pragma once

#include <string>

#include "tools/lsp/Server.h"

namespace tools::lsp {

/// The result of a request of a running server. Throws ResponseError, for an unknown method too.
Json answerRequest(Context& context, const std::string& method, const Json& params);

/// Takes a notification of a running server; one that nobody needs is ignored, as the protocol wants it. Throws
/// ResponseError.
void takeNotification(Context& context, const std::string& method, const Json& params);

}  // namespace tools::lsp
