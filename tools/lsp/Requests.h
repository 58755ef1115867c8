#pragma once

// The requests of a running server, from the parameters of each to its result. Each throws ResponseError for parameters
// that are not what the protocol says.

#include <cstdint>
#include <string>
#include <vector>

#include "frontend/Completion.h"
#include "frontend/Hover.h"
#include "tools/lsp/Abilities.h"
#include "tools/lsp/Client.h"
#include "tools/lsp/Documents.h"
#include "tools/lsp/SessionFile.h"

namespace tools::lsp {

/// What the latest completion offered: what its items are resolved from.
struct LatestCompletion {
  std::uint64_t number = 0;
  /// The text before what the candidates replace.
  std::u16string before = {};
  frontend::Scope scope = {};
  std::vector<frontend::Candidate> candidates = {};
};

/// What every answer is made from.
struct Context {
  Client& client;
  SessionFile& session;
  Abilities abilities = {};
  Documents documents = {};
  LatestCompletion completion = {};
};

/// The result of the request of that name. Throws ResponseError for an unknown one, too.
Json resultOfRequest(Context& context, const std::string& method, const Json& params);

/// Does what a notification says; one that nobody needs is ignored, as the protocol says. Throws ResponseError.
void handleNotification(Context& context, const std::string& method, const Json& params);

// Completion.cpp

/// textDocument/completion
Json completion(Context& context, const Json& params);
/// completionItem/resolve: the item with its documentation, or as it is. Never an error: editors show those in windows.
Json resolve(Context& context, const Json& item);
/// contextdata/explain: {"textDocument", "position", "name"}; why completion there offers the name, or does not.
Json explain(Context& context, const Json& params);

// Hover.cpp

/// textDocument/hover
Json hover(Context& context, const Json& params);
/// textDocument/signatureHelp
Json signatureHelp(Context& context, const Json& params);
/// What is known of a name, as the protocol's MarkupContent.
Json contentOf(const frontend::Hover& hover, bool markdown);

// Symbols.cpp

/// textDocument/documentSymbol: functions with what they give values to, or the variables of a script.
Json documentSymbols(Context& context, const Json& params);
/// workspace/symbol: functions, classes and code files of the session whose names fit a text.
Json workspaceSymbols(Context& context, const Json& params);

}  // namespace tools::lsp
