#pragma once

// Where a prompt's lines come from.

#include <cstddef>
#include <istream>
#include <string>

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

}  // namespace tools::prompt
