#include "tools/lsp/Requests.h"

#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/lsp/Diagnostics.h"

namespace tools::lsp {

namespace {

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

/// contextdata/trace: {"method", "params"} of another request; its result, and what it asked of the host.
Json trace(Context& context, const Json& params) {
  const std::string method = textAt(params, "/method");
  // There is one log, which the inner trace would end.
  if (method == "contextdata/trace") throw ResponseError{ErrorCode::InvalidParams, "a trace is not traced"};
  CallLog log(context.session.host());
  Json result = resultOfRequest(context, method, valueAt(params, "/params"));
  const std::vector<embedded::Call> calls = log.take();
  Json list = Json::array();
  for (const embedded::Call& call : calls) {
    list.push_back({{"operation", call.operation}, {"arguments", call.arguments}});
  }
  return {{"result", std::move(result)},
          {"calls", std::move(list)},
          {"ranCode", embedded::Host::ranKorvalCode(calls)}};
}

using Request = Json (*)(Context& context, const Json& params);

const std::map<std::string, Request> requests = {{"textDocument/completion", completion},
                                                 {"completionItem/resolve", resolve},
                                                 {"textDocument/hover", hover},
                                                 {"textDocument/signatureHelp", signatureHelp},
                                                 {"textDocument/documentSymbol", documentSymbols},
                                                 {"workspace/symbol", workspaceSymbols},
                                                 {"contextdata/explain", explain},
                                                 {"contextdata/trace", trace}};

}  // namespace

Json resultOfRequest(Context& context, const std::string& method, const Json& params) {
  const auto found = requests.find(method);
  if (found == requests.end())
    throw ResponseError{ErrorCode::MethodNotFound, "\"" + method + "\" is unknown"};
  return found->second(context, params);
}

void handleNotification(Context& context, const std::string& method, const Json& params) {
  // Others are not for this server, and a notification has no answer that could say so.
  if (method == "textDocument/didOpen") context.documents.didOpen(params);
  if (method == "textDocument/didChange") context.documents.didChange(params);
  if (method == "textDocument/didClose") {
    // What has been said about a file goes with it, or it would stay in the editor's list of problems.
    clearDiagnostics(context.client, context.documents.didClose(params));
  }
}

}  // namespace tools::lsp
