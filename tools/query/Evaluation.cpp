#include <contextdata/Workspace/Evaluation.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

constexpr std::uint32_t mostResults = 1000;

/// What is in the slots is told also after an exception.
void evaluate(Question& question) {
  const std::u16string expression = question.arguments.text("expression");
  const std::uint32_t nlhs = question.arguments.count("nlhs", mostResults);
  const bool flag = question.arguments.flag("flag");
  std::vector<kxArray_tag*> slots(nlhs);
  question.ask([&] { return EvalcExpSuccessful(expression, static_cast<int>(nlhs), slots.data(), flag); });
  std::vector<boost::intrusive_ptr<kxArray_tag>> plhs;
  for (kxArray_tag* slot : slots) plhs.emplace_back(slot, false);
  question.tell("plhs", plhs);
}

void getValue(Question& question) {
  const std::u16string expression = question.arguments.text("expression");
  question.ask([&] { return GetValueFromCurrentWorkspace(expression); });
}

}  // namespace

std::vector<Operation> evaluationOperations() {
  return {{"EvalcExpSuccessful", evaluate}, {"GetValueFromCurrentWorkspace", getValue}};
}

}  // namespace tools::query
