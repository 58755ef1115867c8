#include "frontend/Tokens.h"

#include <algorithm>
#include <array>

namespace frontend {

namespace {

constexpr std::u16string_view continuation = u"...";

bool isDigit(char16_t character) noexcept { return character >= u'0' && character <= u'9'; }
bool isBlank(char16_t character) noexcept { return character == u' ' || character == u'\t'; }
bool isEnd(char16_t character) noexcept { return character == u'\n' || character == u'\r'; }

class Tokenizer {
 public:
  Tokenizer(std::u16string_view text, std::size_t begin, std::size_t end)
      : text_(text.substr(0, end)), at_(begin) {}

  std::vector<Token> take() {
    while (skipSeparators()) {
      Token token{TokenKind::Symbol, at_, at_, isSeparated_};
      read(token);
      token.end = at_;
      trackBrackets(text_[token.begin]);
      tokens_.push_back(token);
    }
    return std::move(tokens_);
  }

 private:
  /// False at the end of the text.
  bool skipSeparators() {
    isSeparated_ = tokens_.empty();
    while (at_ < text_.size()) {
      if (text_.substr(at_).starts_with(continuation) && skipContinuation()) continue;
      if (!isBlank(text_[at_])) return true;
      isSeparated_ = true;
      ++at_;
    }
    return false;
  }

  /// What follows the dots up to the end of the line is a comment; where no line follows, they are left.
  bool skipContinuation() {
    if (isLastLine_) return false;
    const std::size_t end = text_.find_first_of(u"\r\n", at_);
    isLastLine_ = end == std::u16string_view::npos;
    if (isLastLine_) return false;
    at_ = text_.find_first_not_of(u"\r\n", end);
    at_ = std::min(at_, text_.size());
    isSeparated_ = true;
    return true;
  }

  void read(Token& token) {
    const char16_t character = text_[at_];
    if (isNameStart(character)) {
      token.kind = TokenKind::Name;
      skipWhile(isNamePart);
    } else if (isDigit(character)) {
      token.kind = TokenKind::Number;
      readNumber();
    } else if (character == u'"' || (character == u'\'' && !isTranspose())) {
      token.kind = readText(character) ? TokenKind::Text : TokenKind::OpenText;
    } else if (character == u'%') {
      token.kind = TokenKind::Comment;
      skipWhile([](char16_t other) { return !isEnd(other); });
    } else {
      readSymbol();
    }
  }

  template <class Is>
  void skipWhile(Is is) {
    while (at_ < text_.size() && is(text_[at_])) ++at_;
  }

  /// "1.5e-3"; the dot of "1.x" belongs to the number, that of "1.*x" does not.
  void readNumber() {
    skipWhile(isDigit);
    if (peek() == u'.' && peek(1) != u'*' && peek(1) != u'/' && peek(1) != u'^' && peek(1) != u'\'') {
      ++at_;
      skipWhile(isDigit);
    }
    if (peek() != u'e' && peek() != u'E') return;
    const std::size_t sign = peek(1) == u'+' || peek(1) == u'-' ? 1 : 0;
    if (!isDigit(peek(1 + sign))) return;
    at_ += 1 + sign;
    skipWhile(isDigit);
  }

  char16_t peek(std::size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\0';
  }

  /// Whether the text is closed on this line.
  bool readText(char16_t quote) {
    for (++at_; at_ < text_.size() && !isEnd(text_[at_]); ++at_) {
      if (text_[at_] != quote) continue;
      ++at_;
      if (peek() != quote) return true;
    }
    return false;
  }

  void readSymbol() {
    static constexpr std::array<std::u16string_view, 10> pairs = {u"==", u"~=", u"<=", u">=", u"&&",
                                                                  u"||", u".*", u"./", u".^", u".'"};
    const bool isPair = std::ranges::count(pairs, text_.substr(at_, 2)) > 0;
    at_ += isPair ? 2 : 1;
  }

  /// A quote behind a value transposes it, except that a blank separates elements inside brackets.
  bool isTranspose() const {
    if (tokens_.empty() || (isSeparated_ && isInBrackets())) return false;
    const Token& before = tokens_.back();
    if (before.kind == TokenKind::Symbol) {
      return std::u16string_view(u")]}'").find(text_[before.end - 1]) != std::u16string_view::npos;
    }
    return before.kind != TokenKind::Comment;
  }

  bool isInBrackets() const { return !brackets_.empty() && brackets_.back() != u'('; }

  void trackBrackets(char16_t character) {
    if (character == u'(' || character == u'[' || character == u'{') brackets_.push_back(character);
    if ((character == u')' || character == u']' || character == u'}') && !brackets_.empty())
      brackets_.pop_back();
  }

  std::u16string_view text_;
  std::size_t at_;
  bool isSeparated_ = true;
  /// No line ends from here on, which is not to be found out at every dot of a long line.
  bool isLastLine_ = false;
  std::u16string brackets_;
  std::vector<Token> tokens_;
};

/// The end of the line before the one that begins at `begin`, when that one goes on.
bool goesOn(std::u16string_view text, std::size_t begin) {
  std::size_t end = begin;
  while (end > 0 && isEnd(text[end - 1])) --end;
  const std::size_t start = text.find_last_of(u"\r\n", end == 0 ? 0 : end - 1);
  const std::size_t from = start == std::u16string_view::npos || end == 0 ? 0 : start + 1;
  const auto tokens = tokensOf(text, from, end);
  const std::size_t dots = text.substr(0, end).find(continuation, from);
  if (dots == std::u16string_view::npos) return false;
  return std::ranges::none_of(tokens, [&](const Token& token) {
    return token.kind != TokenKind::Symbol && token.begin <= dots && dots < token.end;
  });
}

}  // namespace

bool isNameStart(char16_t character) noexcept {
  return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

bool isNamePart(char16_t character) noexcept {
  return isNameStart(character) || isDigit(character) || character == u'_';
}

std::size_t beginOfLine(std::u16string_view text, std::size_t offset) {
  std::size_t begin = offset;
  while (true) {
    while (begin > 0 && !isEnd(text[begin - 1])) --begin;
    if (begin == 0 || !goesOn(text, begin)) return begin;
    while (begin > 0 && isEnd(text[begin - 1])) --begin;
  }
}

std::vector<Token> tokensOf(std::u16string_view text, std::size_t begin, std::size_t end) {
  return Tokenizer(text, begin, end).take();
}

}  // namespace frontend
