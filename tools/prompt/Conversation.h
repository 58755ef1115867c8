#pragma once

#include <cstddef>
#include <istream>
#include <string>

#include "tools/prompt/LiveSession.h"

namespace tools::prompt {

/// One line that somebody has typed or written, without its end.
struct InputLine {
  enum Kind {
    Text,
    Abandoned,   ///< Ctrl-C: neither this line nor those before it, which it continues, count
    Unreadable,  ///< the text says why
    End
  };
  Kind kind = End;
  std::u16string text = {};
};

/// Where a prompt's lines come from.
class LineSource {
 public:
  virtual ~LineSource() = default;
  /// `before` are the lines that this one continues, each with its end, or nothing.
  virtual InputLine next(const std::u16string& before) = 0;
};

/// Lines of a file or a pipe: nothing is edited, and no prompt is printed.
class PlainLines final : public LineSource {
 public:
  static constexpr std::size_t longestLine = std::size_t{4} << 20;

  explicit PlainLines(std::istream& input) : input_(input) {}
  InputLine next(const std::u16string& before) override;

 private:
  std::istream& input_;
};

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
