#pragma once

#include <string>

#include "tools/prompt/Lines.h"
#include "tools/prompt/LiveSession.h"

namespace tools::prompt {

/// Lines go in, and are run one after another until they end.
class Conversation {
 public:
  Conversation(LiveSession& live, LineSource& lines, bool isScript)
      : live_(live), lines_(lines), isScript_(isScript) {}

  /// The exit code: of a script it tells whether something failed, or was interrupted.
  int run();

 private:
  /// False when it is the last one.
  bool handle(const InputLine& line);
  bool handleText(const std::u16string& text);
  bool handleCommand(const std::u16string& text);
  bool runStatements();

  LiveSession& live_;
  LineSource& lines_;
  bool isScript_;
  int exitCode_ = 0;
  int lineNumber_ = 0;
  /// Lines that need others to be code.
  std::u16string statements_;
  int firstLine_ = 1;
};

}  // namespace tools::prompt
