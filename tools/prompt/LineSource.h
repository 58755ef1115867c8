#pragma once

#include <string>

namespace tools::prompt {

/// One line that somebody has typed or written, without its end.
struct InputLine {
  enum Kind {
    Text,
    Abandoned,   ///< Ctrl-C: neither this line nor those before it, which it continues, are wanted
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

}  // namespace tools::prompt
