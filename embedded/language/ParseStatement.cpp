#include <utility>

#include "embedded/host/Gate.h"
#include "embedded/language/Nested.h"
#include "host/Exceptions.h"

namespace embedded {

Parser::Parser(std::u16string_view text, const std::string& source, std::size_t nesting)
    : lexer_(text, source), nesting_(nesting) {
  token_ = lexer_.next();
}

Unit Parser::unit() {
  Unit unit;
  unit.script = block();
  while (token_.is(Symbol::Function)) {
    unit.functions.push_back(function());
    skipSeparators();
  }
  if (token_.kind != Token::EndOfText) refuse("a statement");
  if (!unit.functions.empty() && !unit.script.empty())
    lexer_.refuse("A text holds functions or other statements, not both", unit.functions.front().at);
  unit.imports = std::move(imports_);
  return unit;
}

void Parser::skipSeparators() {
  while (accept(Symbol::Semicolon) || accept(Symbol::Comma) || accept(Symbol::Newline)) continue;
}

bool Parser::atEndOfBlock() const {
  return token_.kind == Token::EndOfText || token_.is(Symbol::End) || token_.is(Symbol::Else) ||
         token_.is(Symbol::ElseIf) || token_.is(Symbol::Function);
}

Block Parser::block() {
  Block block;
  for (skipSeparators(); !atEndOfBlock(); skipSeparators()) {
    if (accept(Symbol::Import))
      importStatement();
    else
      block.push_back(statement());
  }
  return block;
}

Statement Parser::statement() {
  const Position at = token_.at;
  Statement result{at, false, Break{}};
  if (loops_ == 0 && (token_.is(Symbol::Break) || token_.is(Symbol::Continue)))
    lexer_.refuse("This stands in loops only", at);
  if (accept(Symbol::If))
    result.form = ifStatement();
  else if (accept(Symbol::While))
    result.form = whileStatement();
  else if (accept(Symbol::For))
    result.form = forStatement();
  else if (accept(Symbol::Continue))
    result.form = Continue{};
  else if (accept(Symbol::Return))
    result.form = Return{};
  else if (!accept(Symbol::Break))
    result = assignmentOrExpression();
  finishStatement(result);
  return result;
}

void Parser::finishStatement(Statement& statement) {
  if (accept(Symbol::Semicolon)) return;
  statement.prints = true;
  if (!accept(Symbol::Comma) && !accept(Symbol::Newline) && !atEndOfBlock())
    refuse("the end of the statement");
}

Statement Parser::assignmentOrExpression() {
  const Position at = token_.at;
  ExpressionPtr value = expression();
  if (token_.is(Symbol::Assign)) return {at, false, assignment(std::move(value))};
  return {at, false, ExpressionStatement{std::move(value)}};
}

Assignment Parser::assignment(ExpressionPtr target) {
  Expressions targets;
  if (auto* matrix = std::get_if<Matrix>(&target->form);
      matrix && !matrix->isCell && matrix->rows.size() == 1)
    targets = std::move(matrix->rows.front());
  else
    targets.push_back(std::move(target));
  for (const ExpressionPtr& each : targets) {
    if (std::holds_alternative<Unwanted>(each->form)) continue;
    const auto* reference = std::get_if<Reference>(&each->form);
    if (reference == nullptr) lexer_.refuse("Nothing can be assigned to this", each->at);
    for (const Selector& access : reference->accesses)
      if (access.kind == Selector::Transposed) lexer_.refuse("Nothing can be assigned to this", access.at);
  }
  take();
  return {std::move(targets), expression()};
}

If Parser::ifStatement() {
  const Nested nested(*this, false, false);
  If result;
  do {
    ExpressionPtr condition = expression();
    result.branches.push_back({std::move(condition), block()});
  } while (accept(Symbol::ElseIf));
  if (accept(Symbol::Else)) result.branches.push_back({nullptr, block()});
  nested.close(Symbol::End, "\"end\"");
  return result;
}

While Parser::whileStatement() {
  const Nested nested(*this, false, false);
  ExpressionPtr condition = expression();
  While result{std::move(condition), loopBlock()};
  nested.close(Symbol::End, "\"end\"");
  return result;
}

For Parser::forStatement() {
  const Nested nested(*this, false, false);
  std::string variable = expectName("the variable of the loop");
  expect(Symbol::Assign, "\"=\"");
  ExpressionPtr values = expression();
  For result{std::move(variable), std::move(values), loopBlock()};
  nested.close(Symbol::End, "\"end\"");
  return result;
}

Block Parser::loopBlock() {
  ++loops_;
  Block result = block();
  --loops_;
  return result;
}

void Parser::importStatement() {
  std::string name = expectName("a name");
  bool every = false;
  while (!every && (token_.is(Symbol::Dot) || token_.is(Symbol::ElementTimes))) {
    every = token_.is(Symbol::ElementTimes);
    take();
    name += every ? ".*" : "." + expectName("a name");
  }
  imports_.push_back(std::move(name));
  if (!atEndOfBlock() && !accept(Symbol::Semicolon) && !accept(Symbol::Comma) && !accept(Symbol::Newline))
    refuse("the end of the statement");
}

FunctionSyntax Parser::function() {
  const Nested nested(*this, false, false);
  FunctionSyntax result;
  result.at = take().at;
  result.outputs = outputs(result.name);
  result.inputs = inputs();
  result.body = block();
  if (!token_.is(Symbol::Function) && token_.kind != Token::EndOfText) nested.close(Symbol::End, "\"end\"");
  return result;
}

/// [a, b] = name, a = name, or name alone.
std::vector<std::string> Parser::outputs(std::string& name) {
  std::vector<std::string> result;
  if (accept(Symbol::OpenBracket)) {
    while (!accept(Symbol::CloseBracket)) {
      result.push_back(expectName("the name of an output"));
      accept(Symbol::Comma);
    }
    expect(Symbol::Assign, "\"=\"");
    name = dottedName();
    return result;
  }
  name = dottedName();
  if (!accept(Symbol::Assign)) return result;
  result.push_back(std::exchange(name, dottedName()));
  return result;
}

std::vector<std::string> Parser::inputs() {
  std::vector<std::string> result;
  if (!accept(Symbol::OpenParen) || accept(Symbol::CloseParen)) return result;
  do result.push_back(accept(Symbol::Not) ? std::string() : expectName("the name of an input"));
  while (accept(Symbol::Comma));
  expect(Symbol::CloseParen, "\",\" or \")\"");
  return result;
}

/// Long texts take their time, so an interrupt stops the reading too.
Token Parser::take() {
  if (++taken_ % 1024 == 0 && activeGate != nullptr && activeGate->interruptRequested())
    throw Tamsix::System::InterruptException();
  return std::exchange(token_, lexer_.next());
}

bool Parser::accept(Symbol symbol) {
  if (!token_.is(symbol)) return false;
  take();
  return true;
}

void Parser::expect(Symbol symbol, const char* what) {
  if (!accept(symbol)) refuse(what);
}

std::string Parser::expectName(const char* what) {
  if (token_.kind != Token::Name) refuse(what);
  return take().name;
}

void Parser::refuse(const std::string& expected) const {
  const bool ended = token_.kind == Token::EndOfText;
  lexer_.refuse(expected + " is expected here" + (ended ? ", but the text ends" : ""), token_.at);
}

}  // namespace embedded
