#pragma once

#include <cstddef>
#include <string_view>

#include "embedded/language/Lexer.h"
#include "embedded/language/Syntax.h"

namespace embedded {

/// How deep brackets and blocks may nest, unless a host says otherwise.
constexpr std::size_t defaultNesting = 100;

/// Reads a text of code. Throws CodeError: "KORVAL:code:Syntax", or "KORVAL:code:NestingLimit" for what nests
/// too deep. `source` names the text in errors.
class Parser {
 public:
  Parser(std::u16string_view text, const std::string& source, std::size_t nesting = defaultNesting);

  Unit unit();

 private:
  class Nested;

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
  void skipSeparators();
  bool atEndOfBlock() const;

  // Expressions.
  ExpressionPtr expression() { return chain(0); }
  ExpressionPtr chain(std::size_t rank);
  ExpressionPtr range(std::size_t rank);
  ExpressionPtr prefixed();
  ExpressionPtr power();
  ExpressionPtr powerOperand();
  ExpressionPtr accessed();
  ExpressionPtr primary();
  ExpressionPtr matrix(bool isCell);
  Expressions row();
  bool endsRow() const;
  std::vector<Selector> accesses();
  Expressions arguments(Symbol closer);
  ExpressionPtr argument();
  bool beginsNextElement() const;
  std::string dottedName();

  // Tokens.
  Token take();
  bool accept(Symbol symbol);
  void expect(Symbol symbol, const char* what);
  std::string expectName(const char* what);
  [[noreturn]] void refuse(const std::string& expected) const;

  Lexer lexer_;
  Token token_;
  std::size_t nesting_;
  std::size_t depth_ = 0;
  std::size_t loops_ = 0;
  std::size_t taken_ = 0;
  bool inMatrix_ = false;
  bool inIndex_ = false;
  std::vector<std::string> imports_;
};

}  // namespace embedded
