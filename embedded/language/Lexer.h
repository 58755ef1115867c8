#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/language/Token.h"

namespace embedded {

/// Takes a text of code apart, token by token. The text must outlive it.
class Lexer {
 public:
  Lexer(std::u16string_view text, std::string source) : text_(text), source_(std::move(source)) {}

  /// The next token; throws CodeError.
  Token next();

  /// Throws CodeError "KORVAL:code:Syntax".
  [[noreturn]] void refuse(const std::string& message, Position at) const;
  const std::string& source() const noexcept { return source_; }

 private:
  char16_t at(std::size_t ahead = 0) const noexcept;
  void advance(std::size_t count = 1) noexcept;
  void skipLine() noexcept;
  /// Blanks, comments and continued lines; answers whether there were any.
  bool skipBlanks();
  void read(Token& token);
  void readNumber(Token& token);
  void readName(Token& token);
  void readQuoted(Token& token, char16_t quote);
  void readMark(Token& token);
  /// Does a "'" here transpose what stands before it?
  bool quoteTransposes(const Token& token) const noexcept;
  bool insideBrackets() const noexcept { return !open_.empty() && open_.back() != Symbol::OpenParen; }
  void trackBrackets(Symbol symbol);

  std::u16string_view text_;
  std::string source_;
  std::size_t position_ = 0;
  Position at_;
  std::vector<Symbol> open_;
  bool afterOperand_ = false;
  bool afterDot_ = false;
};

}  // namespace embedded
