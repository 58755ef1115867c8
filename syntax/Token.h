#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "syntax/Keywords.h"
#include "syntax/Position.h"

namespace syntax {

/// Operators and punctuation.
enum class Symbol : std::uint8_t {
  None,
  Plus,
  Minus,
  Times,
  ElementTimes,
  Divide,
  ElementDivide,
  Power,
  ElementPower,
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
  Equal,
  NotEqual,
  And,
  Or,
  Not,
  AndAlso,
  OrElse,
  Transpose,
  Assign,
  Colon,
  Dot,
  Comma,
  Semicolon,
  Newline,
  At,
  OpenParen,
  CloseParen,
  OpenBracket,
  CloseBracket,
  OpenBrace,
  CloseBrace
};

enum class TokenKind : std::uint8_t {
  EndOfText,
  Symbol,
  Keyword,
  Name,
  Number,
  Text,          ///< 'text'
  String,        ///< "text"
  OpenText,      ///< either, up to the end of a line on which it is not closed
  Comment,       ///< from "%" to the end of the line
  Continuation,  ///< from "..." to the end of the line, which is inside: the statement goes on in the next one
  Invalid        ///< a character that cannot stand in code
};

/// Knows where it is, not what it says: that is in the text.
struct Token {
  TokenKind kind = TokenKind::EndOfText;
  Symbol symbol = Symbol::None;
  Keyword keyword = Keyword::None;
  /// Is there a blank, a comment or a continued line before it; is there a blank or the end of the line after it?
  bool blankBefore = false;
  bool blankAfter = false;
  /// Offsets in UTF-16 code units.
  std::size_t begin = 0;
  std::size_t end = 0;
  /// Where it begins.
  Position at;

  bool is(TokenKind other) const noexcept { return kind == other; }
  bool is(Symbol other) const noexcept { return symbol == other; }
  bool is(Keyword other) const noexcept { return keyword == other; }
  /// A name or a keyword.
  bool isWord() const noexcept { return kind == TokenKind::Name || kind == TokenKind::Keyword; }
  /// What the evaluator reads past.
  bool isRemark() const noexcept { return kind == TokenKind::Comment || kind == TokenKind::Continuation; }
  bool isProblem() const noexcept { return kind == TokenKind::OpenText || kind == TokenKind::Invalid; }

  std::u16string_view in(std::u16string_view text) const { return text.substr(begin, end - begin); }
};

// What tokens of a text say.

/// Of a name or keyword.
std::string nameOf(const Token& token, std::u16string_view text);
/// Of a number.
double numberOf(const Token& token, std::u16string_view text);
/// Of a text that is closed: what is between its quotes, of which it doubles its own.
std::u16string contentOf(const Token& token, std::u16string_view text);
/// Of a problem: why no code has such a token.
std::string problemOf(const Token& token, std::u16string_view text);

}  // namespace syntax
