#include "tools/commands/Answer.h"

#include <iostream>

#include "host/Exceptions.h"
#include "tools/render/Json.h"
#include "tools/render/Text.h"
#include "tools/session/Snapshot.h"

namespace tools {

namespace {

int write(const Answer& answer) {
  if (!answer.notice.empty()) std::cerr << "contextdata: " << answer.notice << '\n';
  // Flushed, or a full disk would be noticed by nobody.
  std::cout << answer.output << std::flush;
  if (std::cout) return Answered;
  std::cerr << "contextdata: cannot write the answer [command.output]\n";
  return NoAnswer;
}

/// For programs the error as JSON, for people its text.
int fail(const AnswerOptions& options, const std::string& json, const std::string& text, int status) {
  if (options.json) {
    std::cout << json << '\n';
  } else {
    std::cerr << "contextdata: " << printableLines(wide(text)) << '\n';
  }
  return status;
}

int fail(const AnswerOptions& options, const AnswerError& error) {
  return fail(options, errorLine(error.code, error.message, error.failed),
              error.message + " [" + error.code + "]", error.status);
}

int failWithCurrentException(const AnswerOptions& options) {
  const std::string code = options.command + ".failed";
  const std::string message = "the class system failed";
  return fail(options, errorLineOfCurrentException(code, message),
              message + ": " + lineOfCurrentException() + " [" + code + "]", NoAnswer);
}

int answer(const AnswerOptions& options, embedded::Host& host,
           const std::function<Answer(embedded::Host&)>& ask) {
  const embedded::Activation active(host);
  const Interruptible request(host);
  try {
    const Answer answer = ask(host);
    // The library may have swallowed it, and what it returns then is not the whole answer.
    if (host.interruptRequested()) return fail(options, interruptedError(options.command));
    return write(answer);
  } catch (const Tamsix::System::InterruptException&) {
    return fail(options, interruptedError(options.command));
  } catch (const AnswerError& error) {
    return fail(options, error);
  } catch (...) {
    return failWithCurrentException(options);
  }
}

}  // namespace

AnswerError interruptedError(const std::string& command) {
  return {command + ".interrupted", "interrupted", Interrupted};
}

int answerOnce(const AnswerOptions& options, const std::function<Answer(embedded::Host&)>& ask) {
  try {
    return answer(options, *loadSnapshot(options.snapshot), ask);
  } catch (const embedded::SnapshotError& error) {
    return fail(options, errorLine(error), messageOf(error), NoAnswer);
  }
}

}  // namespace tools
