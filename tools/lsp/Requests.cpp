#include "tools/lsp/Requests.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

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
    if (isTextAt(options, "/code", frontend::nameOf(policy))) client.policy = policy;
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

/// Keeps a log of the host's calls for as long as it lives.
class CallLog {
 public:
  explicit CallLog(embedded::Host& host) : host_(host) { host_.startLog(); }
  ~CallLog() { host_.takeLog(); }  // which also ends the log of a request that has failed
  CallLog(const CallLog&) = delete;
  CallLog& operator=(const CallLog&) = delete;

  std::vector<embedded::Call> take() { return host_.takeLog(); }

 private:
  embedded::Host& host_;
};

Json trace(Context& context, const Json& params);

template <Json (*request)(Context&, const Json&)>
std::string written(Context& context, const Json& params) {
  return textOf(request(context, params));
}

using Request = std::string (*)(Context& context, const Json& params);

const std::map<std::string, Request> requests = {{"textDocument/completion", completion},
                                                 {"completionItem/resolve", written<resolve>},
                                                 {"textDocument/hover", written<hover>},
                                                 {"textDocument/signatureHelp", written<signatureHelp>},
                                                 {"textDocument/documentSymbol", written<documentSymbols>},
                                                 {"workspace/symbol", written<workspaceSymbols>},
                                                 {"contextdata/explain", written<explain>},
                                                 {"contextdata/trace", written<trace>}};

std::string resultOf(Context& context, const std::string& method, const Json& params) {
  const auto found = requests.find(method);
  if (found == requests.end())
    throw ResponseError{ErrorCode::MethodNotFound, "\"" + method + "\" is unknown"};
  return found->second(context, params);
}

/// contextdata/trace: {"method", "params"} of another request; its result, and what it asked of the host.
Json trace(Context& context, const Json& params) {
  const std::string method = textAt(params, "/method");
  // There is one log, which the inner trace would end.
  if (method == "contextdata/trace") throw ResponseError{ErrorCode::InvalidParams, "a trace is not traced"};
  CallLog log(context.session.host());
  Json result = Json::parse(resultOf(context, method, valueAt(params, "/params")));
  const std::vector<embedded::Call> calls = log.take();
  Json list = Json::array();
  for (const embedded::Call& call : calls) {
    list.push_back({{"operation", call.operation}, {"arguments", call.arguments}});
  }
  return {{"result", std::move(result)},
          {"calls", std::move(list)},
          {"ranCode", embedded::Host::ranKorvalCode(calls)}};
}

}  // namespace

frontend::Options Abilities::options() const {
  frontend::Options options{.policy = policy, .limit = limit, .hidden = hidden};
  // Counted from the request, not from when the server began.
  if (patience.count() > 0) options.deadline = std::chrono::steady_clock::now() + patience;
  return options;
}

Abilities abilitiesOf(const Json& params) {
  if (!params.is_object()) throw ResponseError{ErrorCode::InvalidParams, "\"initialize\" has parameters"};
  const std::string document = "/capabilities/textDocument";
  Abilities client;
  client.encoding = encodingOf(params);
  client.versionedDiagnostics = flagAt(params, document + "/publishDiagnostics/versionSupport");
  client.hierarchicalSymbols = flagAt(params, document + "/documentSymbol/hierarchicalDocumentSymbolSupport");
  client.markdownHover = listAtHas(params, document + "/hover/contentFormat", "markdown");
  client.markdownDocumentation =
      listAtHas(params, document + "/completion/completionItem/documentationFormat", "markdown");
  client.newKinds = hasAt(params, document + "/completion/completionItemKind/valueSet");
  client.parameterOffsets = flagAt(
      params, document + "/signatureHelp/signatureInformation/parameterInformation/labelOffsetSupport");
  readOptions(valueAt(params, "/initializationOptions"), client);
  const Json& process = valueAt(params, "/processId");
  if (process.is_number_unsigned()) client.process = process.get<int>();
  return client;
}

std::string serverAbilities(const Abilities& client) {
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
  return textOf(
      {{"capabilities", capabilities}, {"serverInfo", {{"name", "contextdata"}, {"version", version()}}}});
}

std::string resultOfRequest(Context& context, const std::string& method, const Json& params) {
  return resultOf(context, method, params);
}

void handleNotification(Context& context, const std::string& method, const Json& params) {
  // Others are not for this server, and a notification has no answer that could say so.
  if (method == "textDocument/didOpen") context.documents.didOpen(params);
  if (method == "textDocument/didChange") context.documents.didChange(params);
  if (method == "textDocument/didClose") {
    // What has been said about a file goes with it, or it would stay in the editor's list of problems.
    context.client.publish(context.documents.didClose(params), {});
  }
}

}  // namespace tools::lsp
