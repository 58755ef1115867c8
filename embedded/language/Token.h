#pragma once

#include <cstdint>
#include <string>

#include "embedded/language/CodeError.h"

namespace embedded {

enum class Symbol : std::uint8_t {
  None,
  // Operators, in the order of the table in Operators.cpp.
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
  // Punctuation.
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
  CloseBrace,
  // Keywords.
  If,
  ElseIf,
  Else,
  While,
  For,
  Break,
  Continue,
  Return,
  Function,
  End,
  Import
};

struct Token {
  enum Kind : std::uint8_t { EndOfText, Mark, Name, Number, Text, String };

  Kind kind = EndOfText;
  Symbol symbol = Symbol::None;
  /// Is there a blank before it, and behind it?
  bool blankBefore = false;
  bool blankBehind = false;
  Position at;
  double number = 0;
  std::string name;
  std::u16string text;

  bool is(Symbol wanted) const noexcept { return kind == Mark && symbol == wanted; }
};

}  // namespace embedded
