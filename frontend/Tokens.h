#pragma once

// The tokens of one line of code, which may be half typed: every text has some.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace frontend {

enum class TokenKind { Name, Number, Text, OpenText, Comment, Symbol };

/// Offsets are UTF-16 code units of the whole text.
struct Token {
  TokenKind kind = TokenKind::Symbol;
  std::size_t begin = 0;
  std::size_t end = 0;
  /// There is white space, or the beginning of the line, before it.
  bool isSeparated = false;
};

bool isNameStart(char16_t character) noexcept;
bool isNamePart(char16_t character) noexcept;

/// Where the line of an offset begins; a line that ends in "..." goes on in the next one.
std::size_t beginOfLine(std::u16string_view text, std::size_t offset);

/// The tokens from one offset to another, of which the first is at the beginning of a line.
std::vector<Token> tokensOf(std::u16string_view text, std::size_t begin, std::size_t end);

}  // namespace frontend
