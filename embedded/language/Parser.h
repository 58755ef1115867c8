#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "embedded/language/CodeError.h"
#include "embedded/language/SyntaxTree.h"
#include "syntax/Tokenizer.h"

namespace embedded {

/// Reads a text of code. Throws CodeError: "KORVAL:code:Syntax", or "KORVAL:code:NestingLimit" for what nests
/// too deep.
class Parser {
 public:
  /// Is called now and then, and throws when nobody waits for a long text any more.
  using Poll = std::function<void()>;

  /// `source` names the text in errors. The text must outlive the parser.
  Parser(std::u16string_view text, std::string source, Poll poll = {});

  Unit unit();

 private:
  class Nested;
  using Keyword = syntax::Keyword;
  using Token = syntax::Token;
  using TokenKind = syntax::TokenKind;

  // Statements.
  Block block();
  Statement statement();
  Block loopBlock();
  void finishStatement(Statement& statement);
  Statement assignmentOrExpression();
  Assignment assignment(ExpressionPtr target);
  If ifStatement();
  While whileStatement();
  For forStatement();
  void importStatement();
  FunctionSyntax function();
  std::vector<std::string> outputs(std::string& name);
  std::vector<std::string> inputs();
  bool acceptSeparator();
  bool atEndOfBlock() const;

  // Expressions.
  ExpressionPtr expression() { return binary(0); }
  ExpressionPtr binary(std::size_t rank);
  ExpressionPtr range(std::size_t rank);
  ExpressionPtr unary();
  ExpressionPtr power();
  ExpressionPtr powerOperand();
  ExpressionPtr postfix();
  ExpressionPtr primary();
  ExpressionPtr matrix(bool isCell);
  Expressions row();
  bool endsRow() const;
  std::vector<Selector> accesses();
  std::string fieldName();
  Expressions arguments(Symbol closer);
  ExpressionPtr argument();
  bool isSign() const;
  bool beginsNextElement() const;
  std::string dottedName();

  // Tokens.
  /// The next token of code; throws at one that is a problem.
  Token read();
  /// The current token, after which the next one is current.
  Token advance();
  template <class Terminal>
  bool accept(Terminal terminal);
  template <class Terminal>
  void expect(Terminal terminal, const char* what);
  std::string expectName(const char* what);
  [[noreturn]] void refuse(const std::string& message, Position at) const;
  [[noreturn]] void refuseToken(const std::string& expected) const;

  std::u16string_view text_;
  std::string source_;
  Poll poll_;
  syntax::Tokenizer tokenizer_;
  Token token_;
  std::size_t depth_ = 0;
  std::size_t loops_ = 0;
  std::size_t advances_ = 0;
  bool inMatrix_ = false;
  bool inIndex_ = false;
  std::vector<std::string> imports_;
};

template <class Terminal>
bool Parser::accept(Terminal terminal) {
  if (!token_.is(terminal)) return false;
  advance();
  return true;
}

template <class Terminal>
void Parser::expect(Terminal terminal, const char* what) {
  if (!accept(terminal)) refuseToken(what);
}

/// Inside brackets or a block: one level deeper, with rules of its own for blanks and `end`.
class Parser::Nested {
 public:
  Nested(Parser& parser, bool inMatrix, bool inIndex);
  ~Nested() {
    --parser_.depth_;
    restore();
  }
  Nested(const Nested&) = delete;
  Nested& operator=(const Nested&) = delete;

  /// Advances past the closing bracket or `end`, after which the outer rules are in force again.
  template <class Terminal>
  void close(Terminal closer, const char* expected) const {
    restore();
    parser_.expect(closer, expected);
  }

 private:
  void restore() const {
    parser_.inMatrix_ = inMatrix_;
    parser_.inIndex_ = inIndex_;
  }

  Parser& parser_;
  bool inMatrix_;
  bool inIndex_;
};

// Statements are in Parser.cpp, expressions in ParserExpressions.cpp.

}  // namespace embedded
