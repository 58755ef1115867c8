// What the front end answers about a cursor: runComplete and runExplain of Commands.h.

#include <chrono>

#include "frontend/Explanation.h"
#include "host/Text.h"
#include "tools/commands/Answer.h"
#include "tools/commands/Commands.h"
#include "tools/render/FrontEnd.h"
#include "tools/render/Text.h"
#include "tools/session/HostSession.h"

namespace tools {

namespace {

using frontend::Completion;
using frontend::Explanation;
using frontend::Status;

struct Line {
  std::u16string text;
  std::size_t cursor = 0;
};

/// How many UTF-16 units so many characters of the text take.
std::size_t unitsOf(const std::u16string& text, std::size_t characters) {
  std::size_t at = 0;
  for (; characters > 0 && at < text.size(); --characters)
    at += fl::i18n::is_high_surrogate(text[at]) && at + 1 < text.size() ? 2 : 1;
  return at;
}

/// The text and the cursor as the front end has them; `command` begins the code of the error.
Line lineFrom(const CursorOptions& options, const std::string& command) {
  if (!isUtf8(options.text)) throw AnswerError{command + ".not-utf8", "the text is no UTF-8"};
  Line line{wide(options.text)};
  line.cursor = options.cursor ? unitsOf(line.text, *options.cursor) : line.text.size();
  return line;
}

/// Code of a method has the rights of its class, unless another class is named.
frontend::Scope scopeFrom(const CursorOptions& options, const embedded::Host& host) {
  const std::string& named = options.className;
  return {wide(options.function), wide(named.empty() ? host.classOfFunction(options.function) : named)};
}

frontend::Options limitsFrom(const CursorOptions& options) {
  frontend::Options asked{options.policy, {}, options.limit, options.hidden};
  if (options.milliseconds > 0) {
    asked.deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(options.milliseconds);
  }
  return asked;
}

Answer answerComplete(const CursorOptions& options, embedded::Host& host) {
  const Line line = lineFrom(options, "complete");
  HostSession session(host);
  const Completion completion =
      frontend::complete(session, line.text, line.cursor, scopeFrom(options, host), limitsFrom(options));
  const frontend::Outcome& outcome = completion.outcome;
  if (outcome.status == Status::Interrupted) throw interruptedError("complete");
  // What was found before the failure is worth showing.
  if (outcome.status == Status::Failed && completion.candidates.empty()) {
    throw AnswerError{"complete.failed", printable(outcome.reason)};
  }
  if (options.json) return {jsonLineOf(completion) + '\n'};
  const std::string notice = noticeOf(outcome);
  const bool isEmpty = completion.candidates.empty() && notice.empty();
  return {textOf(completion), isEmpty ? "nothing completes '" + printable(line.text) + "'" : notice};
}

Answer answerExplain(const CursorOptions& options, const std::string& name, embedded::Host& host) {
  const Line line = lineFrom(options, "explain");
  if (!isUtf8(name)) throw AnswerError{"explain.not-utf8", "the name is no UTF-8"};
  HostSession session(host);
  const Explanation explanation = frontend::explain(session, line.text, line.cursor, wide(name),
                                                    scopeFrom(options, host), limitsFrom(options));
  const frontend::Outcome& outcome = explanation.outcome;
  if (outcome.status == Status::Interrupted) throw interruptedError("explain");
  if (outcome.status == Status::Failed) throw AnswerError{"explain.failed", printable(outcome.reason)};
  if (options.json) return {jsonLineOf(explanation) + '\n'};
  return {textOf(explanation), noticeOf(outcome)};
}

}  // namespace

int runComplete(const CursorOptions& options) {
  return answerOnce({"complete", options.snapshot, options.json},
                    [&](embedded::Host& host) { return answerComplete(options, host); });
}

int runExplain(const CursorOptions& options, const std::string& name) {
  return answerOnce({"explain", options.snapshot, options.json},
                    [&](embedded::Host& host) { return answerExplain(options, name, host); });
}

}  // namespace tools
