#pragma once

#include <string>

#include "embedded/Host.h"
#include "tools/lsp/Client.h"
#include "tools/lsp/Documents.h"

namespace tools::lsp {

/// Tells the client what is wrong with the code of a document, or that nothing is.
void publishDiagnostics(Client& client, const std::string& uri, OpenDocument& document, bool withVersion);

/// A snapshot that cannot be loaded.
void publishFailure(Client& client, const std::string& uri, const embedded::SnapshotError& error);

}  // namespace tools::lsp
