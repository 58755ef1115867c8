#include "embedded/language/StatementReader.h"

#include <utility>

namespace embedded {

namespace {

using enum Symbol;

bool separates(const Token& token) { return token.is(Newline) || token.is(Semicolon) || token.is(Comma); }

/// Does the keyword begin a statement, or end the block before it?
bool isKeyword(const Token& token, bool inBrackets) {
  return token.kind == Token::Mark && token.symbol >= If && !(token.is(End) && inBrackets);
}

/// Stands where no token can be read.
bool isBroken(const Token& token) { return token.kind == Token::Mark && token.symbol == None; }

}  // namespace

bool isOpener(const Token& token) {
  return token.is(OpenParen) || token.is(OpenBracket) || token.is(OpenBrace);
}

bool isCloser(const Token& token) {
  return token.is(CloseParen) || token.is(CloseBracket) || token.is(CloseBrace);
}

StatementReader::StatementReader(std::u16string_view text) : text_(text), lineStarts_{0}, lexer_(text, "") {
  for (std::size_t at = text.find(u'\n'); at != std::u16string_view::npos; at = text.find(u'\n', at + 1))
    lineStarts_.push_back(at + 1);
}

void StatementReader::restartAt(int line) {
  const auto index = static_cast<std::size_t>(line - 1);
  lexer_ = Lexer(text_.substr(index < lineStarts_.size() ? lineStarts_[index] : text_.size()), "");
  linesBefore_ = line - 1;
}

Token StatementReader::token() {
  if (kept_) return *std::exchange(kept_, {});
  try {
    Token token = lexer_.next();
    token.at.line += linesBefore_;
    return token;
  } catch (const CodeError& error) {
    Token broken;
    broken.kind = Token::Mark;
    broken.at = {error.at().line + linesBefore_, error.at().column};
    restartAt(broken.at.line + 1);
    return broken;
  }
}

bool StatementReader::ends(const std::vector<Token>& statement, const std::vector<Symbol>& open,
                           const Token& token) {
  if (token.kind == Token::EndOfText || isBroken(token)) return true;
  if (open.empty()) return separates(token) || (!statement.empty() && isKeyword(token, false));
  // Rows of a matrix are lines; other brackets that are open at the end of a line lack their end.
  const bool inRows = open.back() != OpenParen && !statement.front().is(Function);
  return (token.is(Newline) && !inRows) || isKeyword(token, true);
}

std::optional<std::vector<Token>> StatementReader::next() {
  std::vector<Token> statement;
  std::vector<Symbol> open;
  while (true) {
    Token next = token();
    if (ends(statement, open, next)) {
      if (next.kind == Token::EndOfText) end_ = next.at;
      if (!open.empty() && next.is(Newline)) restartAt(next.at.line + 1);
      if (next.kind == Token::EndOfText || isKeyword(next, !open.empty())) kept_ = next;
      if (!statement.empty()) return statement;
      if (next.kind == Token::EndOfText) return {};
      continue;
    }
    if (isOpener(next)) open.push_back(next.symbol);
    if (isCloser(next) && !open.empty()) open.pop_back();
    statement.push_back(std::move(next));
  }
}

}  // namespace embedded
