#pragma once

// How a subcommand answers one question about a session.

#include <functional>
#include <optional>
#include <string>

#include "embedded/Host.h"
#include "tools/render/Json.h"
#include "tools/session/Process.h"

namespace tools {

/// Why a question has no answer. Codes are stable; docs/command.md lists them.
struct AnswerError {
  std::string code;
  std::string message;
  int status = NoAnswer;
  /// What programs are told besides, when it was code that failed.
  std::optional<FailedCode> failed = {};
};

/// The answer was not waited for; the subcommand begins the code.
AnswerError interruptedError(const std::string& command);

struct Answer {
  /// For standard output, whole lines.
  std::string output;
  /// One line for people, for standard error; or nothing.
  std::string notice = {};
};

struct AnswerOptions {
  /// The subcommand, with which the codes of its errors begin.
  std::string command;
  /// The file of the session.
  std::string snapshot;
  /// Errors as JSON on standard output, for programs, instead of text.
  bool json = false;
};

/// Loads the session, asks with its host active, and writes the answer or why there is none: an AnswerError, an
/// interrupt, a failure of the class system, a bad snapshot. The exit code.
int answerOnce(const AnswerOptions& options, const std::function<Answer(embedded::Host&)>& ask);

}  // namespace tools
