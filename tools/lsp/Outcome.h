#pragma once

#include <string>

#include "frontend/Request.h"
#include "tools/lsp/Client.h"

namespace tools::lsp {

/// Leaves a line in the client's log when an answer is not all there is, for whoever wonders why.
void logOutcome(Client& client, const std::string& request, const frontend::Outcome& outcome);

}  // namespace tools::lsp
