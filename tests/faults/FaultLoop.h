#pragma once

// One loop for all exported operations: every host operation that a question reaches is made to fail at each of its
// calls, in each way of failing. After each failure the outcome must be the one that the question's row states, the
// references must balance, and the clean question must have its clean answer.

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "embedded/Host.h"

namespace faults {

/// What a question answered, together with the parameters that it fills.
struct Answer {
  std::string result;
  /// What the list holds afterwards. It begins with "kept".
  std::vector<std::u16string> names;
  bool flag = false;
};

/// What becomes of an exception: it passes, or the question answers this.
using Outcome = std::optional<std::string>;

/// What becomes of an interrupt, and of any other exception.
struct Reaction {
  Outcome interrupt;
  Outcome other;
};

inline const Reaction passes{};
inline Reaction swallowed(const std::string& answer) { return {answer, answer}; }
inline Reaction swallowedButInterrupt(const std::string& answer) { return {{}, answer}; }

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

/// All questions; each area of operations adds its own.
std::vector<Question> allQuestions();

std::vector<Question> classIdentifierQuestions();
std::vector<Question> gatewayQuestions();
std::vector<Question> completionTableQuestions();
std::vector<Question> memberNameQuestions();
std::vector<Question> classInfoQuestions();

/// Runs the loop over one question in the host, which is active; failures are reported to the running test. Answers how
/// many faults happened.
std::size_t failEveryCall(embedded::Host& host, const Question& question);

}  // namespace faults
