#include "tools/lsp/Abilities.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/session/Process.h"

namespace tools::lsp {

namespace {

constexpr int incremental = 2;

/// The client's first choice among those that the server has.
PositionEncoding encodingOf(const Json& params) {
  const Json& offered = valueAt(params, "/capabilities/general/positionEncodings");
  // What the protocol says for clients that offer none.
  if (!offered.is_array()) return PositionEncoding::Utf16;
  for (const Json& encoding : offered) {
    if (encoding == "utf-8") return PositionEncoding::Utf8;
    // The client would rather have this one than UTF-8, if that comes at all.
    if (encoding == "utf-16") break;
  }
  return PositionEncoding::Utf16;
}

using frontend::CodePolicy;

/// "initializationOptions": what an editor's settings can change. What is not understood is left as it was.
void readOptions(const Json& options, Abilities& client) {
  for (const CodePolicy policy : {CodePolicy::Never, CodePolicy::StoredValues, CodePolicy::Allowed}) {
    if (valueAt(options, "/code") == frontend::nameOf(policy)) client.policy = policy;
  }
  const Json& limit = valueAt(options, "/limit");
  if (limit.is_number_unsigned()) client.limit = limit.get<std::size_t>();
  const Json& patience = valueAt(options, "/timeout");
  if (patience.is_number_unsigned()) {
    // Beyond, the deadline might not be a time any more.
    constexpr std::uint64_t aDay = 86'400'000;
    client.patience = std::chrono::milliseconds(std::min(patience.get<std::uint64_t>(), aDay));
  }
  client.hidden = flagAt(options, "/hidden");
}

}  // namespace

frontend::Options Abilities::options() const {
  frontend::Options options{.policy = policy, .limit = limit, .hidden = hidden};
  // Counted from the request, not from when the server began.
  if (patience.count() > 0) options.deadline = std::chrono::steady_clock::now() + patience;
  return options;
}

Abilities abilitiesOf(const Json& params) {
  const std::string document = "/capabilities/textDocument";
  Abilities client;
  client.encoding = encodingOf(params);
  client.versionedDiagnostics = flagAt(params, document + "/publishDiagnostics/versionSupport");
  client.hierarchicalSymbols = flagAt(params, document + "/documentSymbol/hierarchicalDocumentSymbolSupport");
  client.markdownHover = listAtHas(params, document + "/hover/contentFormat", "markdown");
  client.markdownDocumentation =
      listAtHas(params, document + "/completion/completionItem/documentationFormat", "markdown");
  client.newKinds = !valueAt(params, document + "/completion/completionItemKind/valueSet").is_null();
  client.parameterOffsets = flagAt(
      params, document + "/signatureHelp/signatureInformation/parameterInformation/labelOffsetSupport");
  readOptions(valueAt(params, "/initializationOptions"), client);
  const Json& process = valueAt(params, "/processId");
  if (process.is_number_unsigned()) client.process = process.get<int>();
  return client;
}

Json serverAbilities(const Abilities& client) {
  const Json synchronization = {{"openClose", true}, {"change", incremental}, {"save", false}};
  const Json completion = {{"triggerCharacters", {".", "'", "\"", "@", "=", "("}}, {"resolveProvider", true}};
  const Json signatures = {{"triggerCharacters", {"(", ","}}, {"retriggerCharacters", {"="}}};
  const Json capabilities = {
      {"positionEncoding", client.encoding == PositionEncoding::Utf8 ? "utf-8" : "utf-16"},
      {"textDocumentSync", synchronization},
      {"completionProvider", completion},
      {"hoverProvider", true},
      {"signatureHelpProvider", signatures},
      {"documentSymbolProvider", true},
      {"workspaceSymbolProvider", true},
      {"experimental", {{"contextdata/explain", true}, {"contextdata/trace", true}}}};
  return {{"capabilities", capabilities}, {"serverInfo", {{"name", "contextdata"}, {"version", version()}}}};
}

}  // namespace tools::lsp
