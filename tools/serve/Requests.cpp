#include "tools/serve/Requests.h"

#include <map>

#include "tools/serve/Diagnostics.h"

namespace tools::serve {

Json answerRequest(Context&, const std::string& method, const Json&) {
  throw ResponseError{ErrorCode::MethodNotFound, "\"" + method + "\" is unknown"};
}

void takeNotification(Context& context, const std::string& method, const Json& params) {
  if (method == "textDocument/didOpen") context.documents.didOpen(params);
  if (method == "textDocument/didChange") context.documents.didChange(params);
  if (method == "textDocument/didClose") {
    clearDiagnostics(context.client, context.documents.didClose(params));
  }
}

}  // namespace tools::serve
