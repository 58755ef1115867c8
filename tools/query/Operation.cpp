#include "tools/query/Operation.h"

#include <algorithm>

namespace tools::query {

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
