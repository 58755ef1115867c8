#pragma once

// The requests of a running server, from the parameters of each to its result. Each throws ResponseError for parameters
// that are not what the protocol says.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "frontend/Completion.h"
#include "frontend/Hover.h"
#include "tools/lsp/Client.h"
#include "tools/lsp/Documents.h"
#include "tools/lsp/SessionFile.h"

namespace tools::lsp {

/// What the client has told about itself and what its user wants.
struct Abilities {
  PositionEncoding encoding = PositionEncoding::Utf16;
  bool versionedDiagnostics = false;
  bool hierarchicalSymbols = false;
  bool markdownHover = false;
  bool markdownDocumentation = false;
  /// Knows kinds of candidates that the protocol did not have in the beginning.
  bool newKinds = false;
  /// Knows offsets of a parameter in a signature instead of its name.
  bool parameterOffsets = false;
  /// Its process, which the server does not outlive; 0 when it tells none.
  int process = 0;
  /// How far an answer may go.
  frontend::CodePolicy policy = frontend::CodePolicy::StoredValues;
  std::size_t limit = 200;
  std::chrono::milliseconds patience{1000};
  bool hidden = false;

  /// For a request that begins now.
  frontend::Options options() const;
};

/// From the parameters of `initialize`. Throws ResponseError when there are none.
Abilities abilitiesOf(const Json& params);

/// What the server tells about itself: the result of `initialize`, as it is sent.
std::string serverAbilities(const Abilities& client);

/// What the latest completion offered: what its items are resolved from.
struct LatestCompletion {
  std::uint64_t number = 0;
  /// The text before what the candidates replace.
  std::u16string before = {};
  frontend::Scope scope = {};
  std::vector<std::string> imports = {};
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

/// The result of the request of that name, as it is sent. Throws ResponseError for an unknown one, too.
std::string resultOfRequest(Context& context, const std::string& method, const Json& params);

/// Does what a notification says; one that nobody needs is ignored, as the protocol says. Throws ResponseError.
void handleNotification(Context& context, const std::string& method, const Json& params);

// Completion.cpp

/// textDocument/completion. Written as it is sent: a tree of its items takes longer to build than the items to find.
std::string completion(Context& context, const Json& params);
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
