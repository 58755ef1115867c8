#include "tools/serve/Abilities.h"

#include <string>

#include "tools/Version.h"
#include "tools/serve/Params.h"

namespace tools::serve {

namespace {

constexpr int incremental = 2;

/// The client's first choice among those that the server has.
PositionEncoding encodingOf(const Json& params) {
  const Json& offered = valueAt(params, Path("/capabilities/general/positionEncodings"));
  if (!offered.is_array()) return PositionEncoding::Utf16;
  for (const Json& encoding : offered) {
    if (encoding == "utf-8") return PositionEncoding::Utf8;
    if (encoding == "utf-16") break;
  }
  return PositionEncoding::Utf16;
}

}  // namespace

Abilities abilitiesOf(const Json& params) {
  const Path document("/capabilities/textDocument");
  Abilities client;
  client.encoding = encodingOf(params);
  client.versionedDiagnostics = flagAt(params, document / "publishDiagnostics" / "versionSupport");
  client.hierarchicalSymbols =
      flagAt(params, document / "documentSymbol" / "hierarchicalDocumentSymbolSupport");
  client.markdownHover = listAtHas(params, document / "hover" / "contentFormat", "markdown");
  client.markdownDocumentation =
      listAtHas(params, document / "completion" / "completionItem" / "documentationFormat", "markdown");
  const Json& process = valueAt(params, Path("/processId"));
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

}  // namespace tools::serve
