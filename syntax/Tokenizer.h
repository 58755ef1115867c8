#pragma once

#include <vector>

#include "syntax/Token.h"

namespace syntax {

/// Splits a text into tokens, one by one, whatever it holds: what is no code is a token that is a problem. What is not
/// in a token is a blank. The text must outlive it.
class Tokenizer {
 public:
  /// Positions count from `begin`, which is the beginning of a line.
  explicit Tokenizer(std::u16string_view text, std::size_t begin = 0) noexcept
      : text_(text), offset_(begin) {}

  /// At the end an EndOfText, as often as it is asked for.
  Token next();

  /// Forgets the brackets that are open, and goes on where the next line begins, if it is not at a beginning.
  void restartLine();

 private:
  char16_t peek(std::size_t ahead = 0) const noexcept;
  void advance(std::size_t count = 1) noexcept;
  void advanceToEndOfLine() noexcept;
  bool skipBlanks() noexcept;
  /// Moves past the token, and says what it is.
  void read(Token& token);
  void readNumber();
  void readWord(Token& token);
  void readQuoted(Token& token);
  void readSymbol(Token& token);
  bool quoteTransposes(bool blankBefore) const noexcept;
  void trackBrackets(Symbol symbol);
  bool endsOperand(const Token& token) const noexcept;

  std::u16string_view text_;
  std::size_t offset_;
  Position position_;
  std::vector<Symbol> open_;
  bool afterRemark_ = false;
  bool afterOperand_ = false;
  bool afterDot_ = false;
};

/// The tokens between two offsets, of which the first is at the beginning of a line; the text ends at the other one.
std::vector<Token> tokensOf(std::u16string_view text, std::size_t begin, std::size_t end);

}  // namespace syntax
