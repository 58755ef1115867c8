#pragma once

#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "embedded/Host.h"
#include "tools/query/Arguments.h"
#include "tools/query/Rendering.h"
#include "tools/render/Exceptions.h"

namespace tools::query {

/// One request while it is being answered: a handler reads the arguments, asks the library once, and then
/// tells the out-parameters.
class Question {
 public:
  Question(const Arguments& arguments, embedded::Host& host, bool trace)
      : arguments(arguments), host_(host), trace_(trace) {}

  const Arguments& arguments;

  /// Calls the library; nothing else is asked of the host between the beginning and the end of the log.
  template <class Call>
  void ask(Call call) {
    std::optional<std::decay_t<decltype(call())>> result;
    begin();
    try {
      result.emplace(call());
    } catch (...) {
      answer_["exception"] = describeCurrentException();
    }
    end();
    if (result) answer_["result"] = render(*result);
  }

  template <class Parameter>
  void tell(const std::string& name, const Parameter& parameter) {
    answer_[name] = render(parameter);
  }

  /// The execution frames that have been pushed, innermost first.
  std::vector<const IExecutionFrame*> frames() const { return host_.frames(); }

  /// The whole answer.
  Json takeAnswer();

 private:
  void begin();
  void end();

  embedded::Host& host_;
  const bool trace_;
  bool interrupted_ = false;
  std::vector<embedded::Call> log_;
  std::vector<std::string> refused_;
  Json answer_ = Json::object();
};

/// Asks one of two overloads that take a name, the one for narrow text on request.
template <class Overloads>
void askByName(Question& question, Overloads overloads) {
  if (question.arguments.flag("narrow")) {
    const std::string name = question.arguments.narrowText("name");
    question.ask([&] { return overloads(name); });
  } else {
    const std::u16string name = question.arguments.text("name");
    question.ask([&] { return overloads(name); });
  }
}

}  // namespace tools::query
