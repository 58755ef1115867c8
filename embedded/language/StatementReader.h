#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "embedded/language/Lexer.h"

namespace embedded {

bool isOpener(const Token& token);
bool isCloser(const Token& token);

/// Takes a text apart into the tokens of its statements, whatever it holds: what is no token ends a statement, and the
/// next one begins on the next line.
class StatementReader {
 public:
  explicit StatementReader(std::u16string_view text);

  /// The next statement, which is not empty and has no separator in it; nothing at the end of the text.
  std::optional<std::vector<Token>> next();
  /// Where the text ends, once it has ended.
  Position end() const noexcept { return end_; }

 private:
  /// The next token; where there is none, a mark without symbol, behind which the next line follows.
  Token token();
  static bool ends(const std::vector<Token>& statement, const std::vector<Symbol>& open, const Token& token);
  /// Forgets what is open and goes on at a line, counted from 1.
  void restartAt(int line);

  std::u16string_view text_;
  std::vector<std::size_t> lineStarts_;
  Lexer lexer_;
  int linesBefore_ = 0;
  Position end_;
  std::optional<Token> kept_;
};

}  // namespace embedded
