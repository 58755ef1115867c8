#include "tools/query/Operation.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "tools/render/Errors.h"

namespace tools::query {

void Question::ask(const std::function<Result()>& call) {
  // Before the library is asked: a request that is wrong has no effect.
  arguments.finish();
  std::optional<Result> result;
  // The record goes on from request to request; only what this one is refused counts.
  host_.clearCodeRecord();
  if (trace_) host_.startLog();
  try {
    result.emplace(call());
  } catch (...) {
    answer_["exception"] = jsonOfCurrentException();
  }
  // After an exception, too: the calls before it are worth knowing.
  if (trace_) log_ = host_.takeLog();
  refused_ = host_.codeRecord().refused;
  interrupted_ = host_.interruptRequested();
  // Only now: rendering asks the host, too.
  if (result) answer_["result"] = jsonOf(*result);
}

void Question::tell(const std::string& name, const Result& parameter) { answer_[name] = jsonOf(parameter); }

void Question::finish() {
  if (interrupted_) answer_["status"] = "interrupted";
  if (!refused_.empty()) {
    Json& refused = answer_["refused"] = Json::array();
    for (const std::string& what : refused_) refused.push_back(tools::jsonOf(what));
  }
  if (trace_) {
    Json calls = Json::array();
    for (const embedded::Call& call : log_) {
      calls.push_back({{"operation", call.operation}, {"arguments", tools::jsonOf(call.arguments)}});
    }
    answer_["calls"] = std::move(calls);
    answer_["ranKorvalCode"] = embedded::Host::ranKorvalCode(log_);
  }
}

Parameter existing(const char* name) {
  Parameter parameter(name);
  parameter.mayBeNull = false;
  return parameter;
}

Parameter late(const char* name) {
  Parameter parameter(name);
  parameter.isLate = true;
  return parameter;
}

Form given(const char* name, Form form) {
  form.isChosen = [name](const Arguments& arguments) { return arguments.has(name); };
  return form;
}

Form givenIdentifier(const char* name, Form form) {
  form.isChosen = [name](const Arguments& arguments) { return arguments.hasIdentifier(name); };
  return form;
}

Form narrowly(Form form) {
  form.isChosen = [](const Arguments& arguments) { return arguments.flag("narrow"); };
  return form;
}

namespace {

void answerIn(const Form& form, Question& question) {
  std::vector<Argument> arguments(form.parameters.size());
  for (const bool isLate : {false, true}) {
    for (std::size_t at = 0; at < arguments.size(); ++at) {
      const Parameter& parameter = form.parameters[at];
      if (parameter.isLate == isLate) arguments[at] = form.readers[at](question.arguments, parameter);
    }
  }
  question.ask([&] { return form.call(arguments); });
  for (std::size_t at = 0; at < arguments.size(); ++at) {
    if (!form.isOut[at]) continue;
    const auto* names = std::get_if<std::vector<std::u16string>>(&arguments[at]);
    question.tell(form.parameters[at].name, names ? Result(*names) : Result(std::get<bool>(arguments[at])));
  }
}

}  // namespace

Operation::Operation(std::string name, std::vector<Form> forms)
    : name(std::move(name)), answer([forms = std::move(forms)](Question& question) {
        const auto isChosen = [&](const Form& form) {
          return !form.isChosen || form.isChosen(question.arguments);
        };
        answerIn(*std::ranges::find_if(forms, isChosen), question);
      }) {}

const Operation* findOperation(const std::string& name) {
  const auto found = std::ranges::find(operations(), name, &Operation::name);
  return found == operations().end() ? nullptr : &*found;
}

}  // namespace tools::query
