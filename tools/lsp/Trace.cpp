#include "tools/lsp/Trace.h"

#include <string>
#include <utility>
#include <vector>

#include "tools/lsp/Params.h"
#include "tools/lsp/Requests.h"

namespace tools::lsp {

namespace {

/// Keeps a log of the host's calls for as long as it lives.
class CallLog {
 public:
  explicit CallLog(embedded::Host& host) : host_(host) { host_.startLog(); }
  ~CallLog() { host_.takeLog(); }
  CallLog(const CallLog&) = delete;
  CallLog& operator=(const CallLog&) = delete;

  std::vector<embedded::Call> take() { return host_.takeLog(); }

 private:
  embedded::Host& host_;
};

}  // namespace

Json trace(Context& context, const Json& params) {
  const std::string method = textAt(params, Path("/method"));
  if (method == "contextdata/trace") throw ResponseError{ErrorCode::InvalidParams, "a trace is not traced"};
  CallLog log(context.session.host());
  Json result = answerRequest(context, method, valueAt(params, Path("/params")));
  const std::vector<embedded::Call> calls = log.take();
  Json list = Json::array();
  for (const embedded::Call& call : calls) {
    list.push_back({{"operation", call.operation}, {"arguments", call.arguments}});
  }
  return {{"result", std::move(result)},
          {"calls", std::move(list)},
          {"ranCode", embedded::Host::ranKorvalCode(calls)}};
}

}  // namespace tools::lsp
