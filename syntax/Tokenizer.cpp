#include "syntax/Tokenizer.h"

#include <array>
#include <utility>

#include "syntax/Brackets.h"
#include "syntax/Characters.h"

namespace syntax {

namespace {

constexpr std::u16string_view continuation = u"...";

/// Longer ones before those that they begin with.
constexpr std::array<std::pair<std::u16string_view, Symbol>, 34> symbols = {{{u"&&", Symbol::AndAlso},
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

}  // namespace

char16_t Tokenizer::peek(std::size_t ahead) const noexcept {
  return offset_ + ahead < text_.size() ? text_[offset_ + ahead] : u'\0';
}

void Tokenizer::advance(std::size_t count) noexcept {
  for (; count > 0; --count, ++offset_) {
    position_.column += 1;
    if (text_[offset_] == u'\n') position_ = {position_.line + 1, 1};
  }
}

void Tokenizer::advanceToEndOfLine() noexcept {
  while (offset_ < text_.size() && peek() != u'\n') advance();
}

bool Tokenizer::skipBlanks() noexcept {
  const std::size_t before = offset_;
  while (isBlank(peek())) advance();
  return offset_ > before;
}

void Tokenizer::restartLine() {
  if (position_.column > 1) {
    advanceToEndOfLine();
    if (offset_ < text_.size()) advance();
    if (position_.column > 1)
      position_ = {position_.line + 1, 1};  // the end of a text is a line of its own then
  }
  open_.clear();
  afterRemark_ = afterOperand_ = afterDot_ = false;
}

Token Tokenizer::next() {
  Token token;
  token.blankBefore = skipBlanks() || afterRemark_;
  token.begin = offset_;
  token.at = position_;
  if (offset_ < text_.size()) read(token);
  token.end = offset_;
  token.blankAfter = isBlank(peek()) || peek() == u'\n';
  afterRemark_ = token.isRemark();
  // A remark separates tokens and is nothing else: "p. ...\n x" is a member, and "p ...\n '" transposes.
  if (afterRemark_) return token;
  afterDot_ = token.is(Symbol::Dot);
  afterOperand_ = endsOperand(token);
  return token;
}

bool Tokenizer::endsOperand(const Token& token) const noexcept {
  switch (token.kind) {
    case TokenKind::Name:
    case TokenKind::Number:
    case TokenKind::Text:
    case TokenKind::String:
      return true;
    case TokenKind::Symbol:
      return isCloser(token.symbol) || token.symbol == Symbol::Transpose;
    case TokenKind::Keyword:
      return token.keyword == Keyword::End && !open_.empty();  // "x(end)'"
    default:
      return false;
  }
}

void Tokenizer::read(Token& token) {
  const char16_t unit = peek();
  if (isNameStart(unit) || (afterDot_ && isNamePart(unit))) return readWord(token);
  if (isDigit(unit) || (unit == u'.' && isDigit(peek(1)))) {
    token.kind = TokenKind::Number;
    return readNumber();
  }
  if (unit == u'"' || (unit == u'\'' && !quoteTransposes(token.blankBefore))) return readQuoted(token);
  if (unit == u'%') {
    token.kind = TokenKind::Comment;
    return advanceToEndOfLine();
  }
  if (text_.substr(offset_, continuation.size()) == continuation) {
    token.kind = TokenKind::Continuation;
    advanceToEndOfLine();
    if (offset_ < text_.size()) advance();
    return;
  }
  readSymbol(token);
}

/// A quote after an operand transposes it, except that a blank separates elements inside brackets: [a 'b'].
bool Tokenizer::quoteTransposes(bool blankBefore) const noexcept {
  const bool inRow = !open_.empty() && open_.back() != Symbol::OpenParen;
  return afterOperand_ && !(inRow && blankBefore);
}

/// "1.5e-3"; the dot of "1.x" belongs to the number, that of "1.*x" does not.
void Tokenizer::readNumber() {
  const auto digits = [this] {
    while (isDigit(peek())) advance();
  };
  digits();
  // "1.*x" multiplies: an operator that begins with a dot comes before a number that ends with one.
  const bool isOperator = std::u16string_view(u"*/^'.").find(peek(1)) != std::u16string_view::npos;
  if (peek() == u'.' && !isOperator) advance();
  digits();
  const std::size_t sign = peek(1) == u'+' || peek(1) == u'-' ? 1 : 0;
  if ((peek() == u'e' || peek() == u'E') && isDigit(peek(1 + sign))) {
    advance(1 + sign);
    digits();
  }
}

void Tokenizer::readWord(Token& token) {
  while (isNamePart(peek())) advance();
  // After a dot every word is the name of a member: "p.end".
  if (!afterDot_) token.keyword = keywordOf(text_.substr(token.begin, offset_ - token.begin));
  token.kind = token.keyword == Keyword::None ? TokenKind::Name : TokenKind::Keyword;
}

void Tokenizer::readQuoted(Token& token) {
  const char16_t quote = peek();
  token.kind = TokenKind::OpenText;
  for (advance(); offset_ < text_.size() && peek() != u'\n'; advance()) {
    if (peek() != quote) continue;
    if (peek(1) != quote) {
      token.kind = quote == u'"' ? TokenKind::String : TokenKind::Text;
      return advance();
    }
    advance();  // a doubled quote stands for itself
  }
}

void Tokenizer::readSymbol(Token& token) {
  for (const auto& [spelling, symbol] : symbols) {
    if (!text_.substr(offset_).starts_with(spelling)) continue;
    token.kind = TokenKind::Symbol;
    token.symbol = symbol;
    advance(spelling.size());
    return trackBrackets(symbol);
  }
  token.kind = TokenKind::Invalid;
  advance();
}

void Tokenizer::trackBrackets(Symbol symbol) {
  if (isOpener(symbol))
    open_.push_back(symbol);
  else if (!open_.empty() && symbol == closerOf(open_.back()))
    open_.pop_back();
}

std::vector<Token> tokensOf(std::u16string_view text, std::size_t begin, std::size_t end) {
  Tokenizer tokenizer(text.substr(0, end), begin);
  std::vector<Token> tokens;
  for (Token token = tokenizer.next(); !token.is(TokenKind::EndOfText); token = tokenizer.next())
    tokens.push_back(token);
  return tokens;
}

}  // namespace syntax
