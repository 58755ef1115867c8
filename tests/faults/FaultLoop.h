#pragma once

// One loop for all exported operations: every host operation that a question reaches is made to fail at each of its
// calls, in each way of failing. After each failure the outcome must be the one that the question's row states, the
// references must balance, and the clean question must have its clean answer.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <concepts>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "embedded/Host.h"
#include "tests/support/Text.h"

namespace faults {

/// What a question answered, together with the parameters that it fills.
struct Answer {
  std::string result;
  /// What the list holds afterwards. It begins with "kept".
  std::vector<std::u16string> names;
  bool flag = false;
};

/// What becomes of an exception: it propagates, or the question answers this.
using Outcome = std::optional<std::string>;

/// What becomes of an interrupt, and of any other exception.
struct Reaction {
  /// What the outcome is about: the answer, with what had been appended before; the clean answer; or nothing, since what
  /// such a failure does is open, as long as nothing leaks and the next answer is clean.
  enum Effect { Stated, Ignored, Open };

  Outcome interrupt = {};
  Outcome other = {};
  Effect effect = Stated;
};

/// The reaction to failures of one host operation ("*": of all that have no rule of their own), at the n-th of its calls
/// or at any (0).
struct Rule {
  std::string hostOperation;
  Reaction reaction;
  std::size_t call = 0;
};

/// One question to an exported operation.
struct Question {
  /// As the list of exported operations names it.
  std::string operation;
  /// Which of its forms.
  std::string form;
  /// The flag before the question; the clean answer must be the other one if the operation sets it.
  std::function<void(Answer&)> ask;
  std::vector<Rule> rules;
  /// The host operation whose completion appends the next name; empty: the list is appended to only by a clean answer.
  std::string appendsAfter = {};
  /// The host operation whose completion sets the flag; empty: only a clean answer sets it.
  std::string setsFlagAfter = {};
};

using Questions = std::vector<Question>;

/// What tests/faults/rules.rows states for the question.
std::vector<Rule> rulesOf(const std::string& operation, const std::string& form);

inline std::string asText(const std::string& text) { return text; }
inline std::string asText(const std::u16string& text) { return shown(text); }
inline std::string asText(std::same_as<bool> auto value) { return shown(value); }
inline std::string asText(unsigned long number) { return std::to_string(number); }

/// A question whose result is what `ask` returns. It takes the answer when it fills more than that, or returns nothing.
template <class Ask>
Question asks(const std::string& operation, const std::string& form, Ask ask,
              const std::string& appendsAfter = "", const std::string& setsFlagAfter = "") {
  const auto fill = [ask](Answer& answer) {
    if constexpr (std::invocable<Ask>)
      answer.result = asText(ask());
    else if constexpr (std::is_void_v<std::invoke_result_t<Ask, Answer&>>)
      ask(answer);
    else
      answer.result = asText(ask(answer));
  };
  return {operation, form, fill, rulesOf(operation, form), appendsAfter, setsFlagAfter};
}

Questions joined(std::initializer_list<Questions> parts);

/// All questions; each area of operations adds its own.
Questions allQuestions();

Questions classSystemQuestions();
Questions classInfoQuestions();
Questions workspaceQuestions();

/// A world in which every exported operation reaches as much of the host as it can.
std::unique_ptr<embedded::Host> makeWorld();

/// The world that is active, for the questions that need a value or a function of it.
embedded::Host*& activeWorld();

boost::intrusive_ptr<kxArray_tag> variable(const std::string& name);

/// Runs the loop over one question in the host, which is active; failures are reported to the running test. Returns how
/// many faults happened.
std::size_t failEveryCall(embedded::Host& host, const Question& question);

}  // namespace faults
