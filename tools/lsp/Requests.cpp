#include "tools/lsp/Requests.h"

#include <map>

#include "tools/lsp/Completion.h"
#include "tools/lsp/Diagnostics.h"
#include "tools/lsp/Explain.h"
#include "tools/lsp/Hover.h"
#include "tools/lsp/SignatureHelp.h"
#include "tools/lsp/Symbols.h"
#include "tools/lsp/Trace.h"

namespace tools::lsp {

namespace {

using Answerer = Json (*)(Context& context, const Json& params);

const std::map<std::string, Answerer> answerers = {{"textDocument/completion", completion},
                                                   {"completionItem/resolve", resolve},
                                                   {"textDocument/hover", hover},
                                                   {"textDocument/signatureHelp", signatureHelp},
                                                   {"textDocument/documentSymbol", documentSymbols},
                                                   {"workspace/symbol", workspaceSymbols},
                                                   {"contextdata/explain", explain},
                                                   {"contextdata/trace", trace}};

}  // namespace

Json answerRequest(Context& context, const std::string& method, const Json& params) {
  const auto found = answerers.find(method);
  if (found == answerers.end())
    throw ResponseError{ErrorCode::MethodNotFound, "\"" + method + "\" is unknown"};
  return found->second(context, params);
}

void takeNotification(Context& context, const std::string& method, const Json& params) {
  if (method == "textDocument/didOpen") context.documents.didOpen(params);
  if (method == "textDocument/didChange") context.documents.didChange(params);
  if (method == "textDocument/didClose") {
    clearDiagnostics(context.client, context.documents.didClose(params));
  }
}

}  // namespace tools::lsp
