#include "tools/query/Question.h"

namespace tools::query {

void Question::begin() {
  arguments.finish();
  host_.clearCodeRecord();
  if (trace_) host_.startLog();
}

void Question::end() {
  if (trace_) log_ = host_.takeLog();
  refused_ = host_.codeRecord().refused;
  interrupted_ = host_.interruptRequested();
}

Json Question::takeAnswer() {
  if (interrupted_) answer_["status"] = "interrupted";
  if (!refused_.empty()) {
    Json& refused = answer_["refused"] = Json::array();
    for (const std::string& what : refused_) refused.push_back(jsonOf(what));
  }
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
