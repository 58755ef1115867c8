#include "tools/prompt/Conversation.h"

#include <iostream>
#include <utility>

#include "tools/prompt/Commands.h"
#include "tools/prompt/Evaluation.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools::prompt {

InputLine PlainLines::next(const std::u16string&) {
  std::string line;
  if (!readLine(input_, line, longestLine)) return {InputLine::End};
  if (line.size() > longestLine)
    return {InputLine::Unreadable, u"the line has more than 4 MiB [prompt.too-long]"};
  if (!isUtf8(line)) return {InputLine::Unreadable, u"the line is no UTF-8 text [prompt.not-utf8]"};
  // Files from elsewhere.
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return {InputLine::Text, wide(line)};
}

int Conversation::run() {
  while (handle(lines_.next(statements_))) continue;
  return isScript_ ? exitCode_ : Answered;
}

bool Conversation::handle(const InputLine& line) {
  ++lineNumber_;
  switch (line.kind) {
    case InputLine::Text:
      return handleText(line.text);
    case InputLine::Abandoned:
      statements_.clear();
      return true;
    case InputLine::Unreadable:
      std::cerr << "input:" << lineNumber_ << ": " << printable(line.text) << std::endl;
      exitCode_ = NoAnswer;
      return true;
    case InputLine::End:
      if (isScript_ && !statements_.empty()) runStatements();
      // At a terminal the end of the input drops a block that was begun, and ends the session without one.
      return !isScript_ && !std::exchange(statements_, {}).empty();
  }
  return false;
}

bool Conversation::handleText(const std::u16string& text) {
  if (statements_.empty()) {
    if (isCommand(text)) return handleCommand(text);
    // Errors in a script are told with lines of the file, those at a terminal with lines of what was typed.
    firstLine_ = isScript_ ? lineNumber_ : 1;
  }
  statements_ += text + u'\n';
  return isUnfinished(statements_) || runStatements();
}

bool Conversation::handleCommand(const std::u16string& text) {
  const CommandEnding ending = runCommand(live_, text);
  takeInterrupt();  // one that came too late for the command drops no later line
  if (ending == CommandEnding::Failed) exitCode_ = NoAnswer;
  return ending != CommandEnding::Quit;
}

/// A script that somebody interrupts is over.
bool Conversation::runStatements() {
  const Ending ending = evaluate(live_, std::exchange(statements_, {}), firstLine_);
  if (ending == Ending::Failed) exitCode_ = NoAnswer;
  if (ending == Ending::Interrupted) exitCode_ = Interrupted;
  return !isScript_ || ending != Ending::Interrupted;
}

}  // namespace tools::prompt
