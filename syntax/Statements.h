#pragma once

#include <optional>
#include <vector>

#include "syntax/Tokenizer.h"

namespace syntax {

/// Splits a text into the tokens of its statements, whatever it holds: what is no token ends a statement, and the
/// next one begins on the next line.
class Statements {
 public:
  explicit Statements(std::u16string_view text) : tokenizer_(text) {}

  /// The next statement, which is not empty and has no separator in it; nothing at the end of the text.
  std::optional<std::vector<Token>> next();
  /// Where the text ends, once it has ended.
  Position end() const noexcept { return end_; }

 private:
  Token token();
  static bool ends(const std::vector<Token>& statement, const std::vector<Symbol>& open, const Token& token);

  Tokenizer tokenizer_;
  Position end_;
  std::optional<Token> kept_;
};

/// Where the line of an offset begins; a line that ends in "..." goes on in the next one. "\r" ends a line here too: an
/// editor may end its lines with it alone.
std::size_t beginOfLine(std::u16string_view text, std::size_t offset);

}  // namespace syntax
