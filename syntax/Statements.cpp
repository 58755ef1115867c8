#include "syntax/Statements.h"

#include <algorithm>
#include <utility>

#include "syntax/Brackets.h"

namespace syntax {

namespace {

bool separates(const Token& token) {
  return token.is(Symbol::Newline) || token.is(Symbol::Semicolon) || token.is(Symbol::Comma);
}

/// Does the keyword begin a statement, or end the block before it? "x(end)" does not.
bool isBoundary(const Token& token, bool inBrackets) {
  return token.is(TokenKind::Keyword) && !(token.is(Keyword::End) && inBrackets);
}

bool isEndOfLine(char16_t unit) { return unit == u'\n' || unit == u'\r'; }

std::size_t beginOfPlainLine(std::u16string_view text, std::size_t offset) {
  while (offset > 0 && !isEndOfLine(text[offset - 1])) --offset;
  return offset;
}

/// Before the ends of the lines that are before an offset.
std::size_t beforeLineEnds(std::u16string_view text, std::size_t offset) {
  while (offset > 0 && isEndOfLine(text[offset - 1])) --offset;
  return offset;
}

bool endsInContinuation(std::u16string_view text, std::size_t begin, std::size_t end) {
  if (text.substr(begin, end - begin).find(u"...") == std::u16string_view::npos) return false;
  // The dots may be in a text or a comment.
  const auto tokens = tokensOf(text, begin, end);
  return !tokens.empty() && tokens.back().is(TokenKind::Continuation);
}

}  // namespace

/// A token of code, or a problem.
Token Statements::token() {
  if (kept_) return *std::exchange(kept_, {});
  Token token = tokenizer_.next();
  while (token.isRemark()) token = tokenizer_.next();
  // What follows a problem in its line means nothing that could be relied on.
  if (token.isProblem()) tokenizer_.restartLine();
  return token;
}

bool Statements::ends(const std::vector<Token>& statement, const std::vector<Symbol>& open,
                      const Token& token) {
  if (token.is(TokenKind::EndOfText) || token.isProblem()) return true;
  if (open.empty()) return separates(token) || (!statement.empty() && isBoundary(token, false));
  // Rows of a matrix are lines; other brackets that are open at the end of a line lack their end.
  const bool inRows = open.back() != Symbol::OpenParen && !statement.front().is(Keyword::Function);
  return (token.is(Symbol::Newline) && !inRows) || isBoundary(token, true);
}

std::optional<std::vector<Token>> Statements::next() {
  std::vector<Token> statement;
  std::vector<Symbol> open;
  while (true) {
    const Token next = token();
    if (ends(statement, open, next)) {
      const bool atEnd = next.is(TokenKind::EndOfText);
      if (atEnd) end_ = next.at;
      // The tokenizer keeps the brackets that are open, too, and has to forget them.
      if (!open.empty() && next.is(Symbol::Newline)) tokenizer_.restartLine();
      // It begins the next statement; other ends belong to none.
      if (atEnd || isBoundary(next, !open.empty())) kept_ = next;
      if (!statement.empty()) return statement;
      if (atEnd) return {};
      continue;
    }
    if (isOpener(next.symbol)) open.push_back(next.symbol);
    if (isCloser(next.symbol) && !open.empty()) open.pop_back();
    statement.push_back(next);
  }
}

std::size_t beginOfLine(std::u16string_view text, std::size_t offset) {
  std::size_t begin = beginOfPlainLine(text, offset);
  while (begin > 0) {
    const std::size_t end = beforeLineEnds(text, begin);
    const std::size_t before = beginOfPlainLine(text, end);
    if (!endsInContinuation(text, before, end)) break;
    begin = before;
  }
  return begin;
}

}  // namespace syntax
