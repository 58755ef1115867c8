#include "tools/query/Question.h"

namespace tools::query {

void Question::begin() {
  arguments.finish();
  if (trace_) host_.startLog();
}

void Question::end() {
  if (trace_) log_ = host_.takeLog();
  interrupted_ = host_.interruptRequested();
}

Json Question::takeAnswer() {
  if (interrupted_) answer_["status"] = "interrupted";
  if (trace_) {
    Json calls = Json::array();
    for (const embedded::Call& call : log_) {
      calls.push_back({{"operation", call.operation}, {"arguments", jsonOf(call.arguments)}});
    }
    answer_["calls"] = std::move(calls);
    answer_["ranKorvalCode"] = embedded::Host::ranKorvalCode(log_);
  }
  return std::move(answer_);
}

}  // namespace tools::query
