#include "embedded/language/Lexer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace embedded {

namespace {

using Mark = std::pair<std::u16string_view, Symbol>;

/// Longer ones before those that they begin with.
constexpr std::array<Mark, 34> marks = {{{u"&&", Symbol::AndAlso},
                                         {u"||", Symbol::OrElse},
                                         {u"==", Symbol::Equal},
                                         {u"~=", Symbol::NotEqual},
                                         {u"<=", Symbol::LessEqual},
                                         {u">=", Symbol::GreaterEqual},
                                         {u".*", Symbol::ElementTimes},
                                         {u"./", Symbol::ElementDivide},
                                         {u".^", Symbol::ElementPower},
                                         {u".'", Symbol::Transpose},
                                         {u"+", Symbol::Plus},
                                         {u"-", Symbol::Minus},
                                         {u"*", Symbol::Times},
                                         {u"/", Symbol::Divide},
                                         {u"^", Symbol::Power},
                                         {u"<", Symbol::Less},
                                         {u">", Symbol::Greater},
                                         {u"&", Symbol::And},
                                         {u"|", Symbol::Or},
                                         {u"~", Symbol::Not},
                                         {u"=", Symbol::Assign},
                                         {u":", Symbol::Colon},
                                         {u".", Symbol::Dot},
                                         {u",", Symbol::Comma},
                                         {u";", Symbol::Semicolon},
                                         {u"\n", Symbol::Newline},
                                         {u"@", Symbol::At},
                                         {u"(", Symbol::OpenParen},
                                         {u")", Symbol::CloseParen},
                                         {u"[", Symbol::OpenBracket},
                                         {u"]", Symbol::CloseBracket},
                                         {u"{", Symbol::OpenBrace},
                                         {u"}", Symbol::CloseBrace},
                                         {u"'", Symbol::Transpose}}};

constexpr std::array<std::pair<std::string_view, Symbol>, 11> keywords = {{{"if", Symbol::If},
                                                                           {"elseif", Symbol::ElseIf},
                                                                           {"else", Symbol::Else},
                                                                           {"while", Symbol::While},
                                                                           {"for", Symbol::For},
                                                                           {"break", Symbol::Break},
                                                                           {"continue", Symbol::Continue},
                                                                           {"return", Symbol::Return},
                                                                           {"function", Symbol::Function},
                                                                           {"end", Symbol::End},
                                                                           {"import", Symbol::Import}}};

bool isLetter(char16_t unit) { return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z'); }
bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool isNameUnit(char16_t unit) { return isLetter(unit) || isDigit(unit) || unit == u'_'; }
bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t' || unit == u'\r'; }

Symbol closerOf(Symbol opener) {
  if (opener == Symbol::OpenParen) return Symbol::CloseParen;
  return opener == Symbol::OpenBracket ? Symbol::CloseBracket : Symbol::CloseBrace;
}

}  // namespace

char16_t Lexer::at(std::size_t ahead) const noexcept {
  return position_ + ahead < text_.size() ? text_[position_ + ahead] : u'\0';
}

void Lexer::advance(std::size_t count) noexcept {
  for (; count > 0; --count, ++position_) {
    at_.column += 1;
    if (text_[position_] == u'\n') at_ = {at_.line + 1, 1};
  }
}

void Lexer::skipLine() noexcept {
  while (position_ < text_.size() && at() != u'\n') advance();
}

bool Lexer::skipBlanks() {
  const std::size_t before = position_;
  while (position_ < text_.size()) {
    if (isBlank(at())) {
      advance();
    } else if (at() == u'%') {
      skipLine();
    } else if (text_.substr(position_, 3) == u"...") {
      skipLine();
      if (position_ < text_.size()) advance();
    } else {
      break;
    }
  }
  return position_ > before;
}

Token Lexer::next() {
  Token token;
  token.blankBefore = skipBlanks();
  token.at = at_;
  if (position_ < text_.size()) read(token);
  token.blankBehind = isBlank(at()) || at() == u'\n';
  afterDot_ = token.is(Symbol::Dot);
  afterOperand_ = token.kind == Token::Mark
                      ? token.is(Symbol::CloseParen) || token.is(Symbol::CloseBracket) ||
                            token.is(Symbol::CloseBrace) || token.is(Symbol::Transpose) ||
                            (token.is(Symbol::End) && !open_.empty())
                      : token.kind != Token::EndOfText;
  return token;
}

void Lexer::read(Token& token) {
  if (isLetter(at()) || (afterDot_ && isNameUnit(at()))) return readName(token);
  if (isDigit(at()) || (at() == u'.' && isDigit(at(1)))) return readNumber(token);
  if (at() == u'"') return readQuoted(token, u'"');
  if (at() == u'\'' && !quoteTransposes(token)) return readQuoted(token, u'\'');
  readMark(token);
}

bool Lexer::quoteTransposes(const Token& token) const noexcept {
  return afterOperand_ && !(insideBrackets() && token.blankBefore);
}

void Lexer::readNumber(Token& token) {
  const std::size_t start = position_;
  const auto digits = [&] {
    while (isDigit(at())) advance();
  };
  digits();
  const bool isOperator = at(1) == u'*' || at(1) == u'/' || at(1) == u'^' || at(1) == u'\'' || at(1) == u'.';
  if (at() == u'.' && !isOperator) advance();
  digits();
  const std::size_t sign = at(1) == u'+' || at(1) == u'-' ? 1 : 0;
  if ((at() == u'e' || at() == u'E') && isDigit(at(1 + sign))) {
    advance(1 + sign);
    digits();
  }
  const std::string text(text_.begin() + static_cast<std::ptrdiff_t>(start),
                         text_.begin() + static_cast<std::ptrdiff_t>(position_));
  token.kind = Token::Number;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), token.number);
  if (read.ec == std::errc::result_out_of_range) token.number = std::strtod(text.c_str(), nullptr);
}

void Lexer::readName(Token& token) {
  token.kind = Token::Name;
  while (isNameUnit(at())) {
    token.name += static_cast<char>(at());
    advance();
  }
  if (afterDot_) return;
  for (const auto& [word, symbol] : keywords) {
    if (word == token.name) {
      token.kind = Token::Mark;
      token.symbol = symbol;
    }
  }
}

void Lexer::readQuoted(Token& token, char16_t quote) {
  token.kind = quote == u'"' ? Token::String : Token::Text;
  for (advance();; advance()) {
    if (position_ == text_.size() || at() == u'\n')
      refuse(std::string("The text lacks its closing ") + static_cast<char>(quote), token.at);
    if (at() == quote) {
      advance();
      if (at() != quote) return;
    }
    token.text += at();
  }
}

void Lexer::readMark(Token& token) {
  token.kind = Token::Mark;
  for (const auto& [mark, symbol] : marks) {
    if (!text_.substr(position_).starts_with(mark)) continue;
    token.symbol = symbol;
    advance(mark.size());
    return trackBrackets(symbol);
  }
  constexpr char digits[] = "0123456789ABCDEF";
  std::string code;
  for (int shift = 12; shift >= 0; shift -= 4) code += digits[(at() >> shift) & 15];
  refuse("The character U+" + code + " cannot stand here", token.at);
}

void Lexer::trackBrackets(Symbol symbol) {
  if (symbol == Symbol::OpenParen || symbol == Symbol::OpenBracket || symbol == Symbol::OpenBrace)
    open_.push_back(symbol);
  else if (!open_.empty() && symbol == closerOf(open_.back()))
    open_.pop_back();
}

void Lexer::refuse(const std::string& message, Position at) const {
  throw CodeError("KORVAL:code:Syntax", message, source_, at);
}

}  // namespace embedded
