#include "embedded/language/Parser.h"

#include <utility>

namespace embedded {

namespace {

using enum Symbol;

/// How deep brackets and blocks may nest: each level is one of the C++ stack's too.
constexpr std::size_t deepestNesting = 100;

}  // namespace

Parser::Nested::Nested(Parser& parser, bool inMatrix, bool inIndex)
    : parser_(parser), inMatrix_(parser.inMatrix_), inIndex_(parser.inIndex_) {
  if (parser.depth_ == deepestNesting)
    throw CodeError("KORVAL:code:NestingLimit",
                    "The text nests deeper than " + std::to_string(deepestNesting) + " levels",
                    parser.source_, parser.token_.at);
  ++parser.depth_;
  parser.inMatrix_ = inMatrix;
  parser.inIndex_ = inIndex;
}

Parser::Parser(std::u16string_view text, std::string source, Poll poll)
    : text_(text), source_(std::move(source)), poll_(std::move(poll)), tokenizer_(text) {
  token_ = read();
}

Parser::Token Parser::read() {
  Token token = tokenizer_.next();
  while (token.isRemark()) token = tokenizer_.next();
  if (token.isProblem()) refuse(problemOf(token, text_), token.at);
  return token;
}

Parser::Token Parser::advance() {
  // Often enough for an interrupt to be felt, seldom enough to cost nothing.
  if (++advances_ % 1024 == 0 && poll_) poll_();
  return std::exchange(token_, read());
}

std::string Parser::expectName(const char* what) {
  if (!token_.is(TokenKind::Name)) refuseToken(what);
  return nameOf(advance(), text_);
}

void Parser::refuse(const std::string& message, Position at) const {
  throw CodeError("KORVAL:code:Syntax", message, source_, at);
}

void Parser::refuseToken(const std::string& expected) const {
  const bool ended = token_.is(TokenKind::EndOfText);
  refuse(expected + " is expected here" + (ended ? ", but the text ends" : ""), token_.at);
}

Unit Parser::unit() {
  Unit unit;
  unit.script = block();
  while (token_.is(Keyword::Function)) {
    unit.functions.push_back(function());
    while (acceptSeparator()) continue;
  }
  if (!token_.is(TokenKind::EndOfText)) refuseToken("a statement");
  if (!unit.functions.empty() && !unit.script.empty())
    refuse("A text holds functions or other statements, not both", unit.functions.front().at);
  // Imports hold for the whole text, wherever they stand in it.
  unit.imports = std::move(imports_);
  return unit;
}

bool Parser::acceptSeparator() { return accept(Semicolon) || accept(Comma) || accept(Newline); }

bool Parser::atEndOfBlock() const {
  // A function without its own `end` is ended by the next one.
  return token_.is(TokenKind::EndOfText) || token_.is(Keyword::End) || token_.is(Keyword::Else) ||
         token_.is(Keyword::ElseIf) || token_.is(Keyword::Function);
}

Block Parser::block() {
  Block block;
  while (!atEndOfBlock()) {
    if (acceptSeparator()) continue;
    if (accept(Keyword::Import))
      importStatement();
    else
      block.push_back(statement());
  }
  return block;
}

Statement Parser::statement() {
  const Position at = token_.at;
  // Of a variant something must be there: Break is what needs nothing else.
  Statement result{at, false, Break{}};
  if (loops_ == 0 && (token_.is(Keyword::Break) || token_.is(Keyword::Continue)))
    refuse("This stands in loops only", at);
  if (accept(Keyword::If))
    result.form = ifStatement();
  else if (accept(Keyword::While))
    result.form = whileStatement();
  else if (accept(Keyword::For))
    result.form = forStatement();
  else if (accept(Keyword::Continue))
    result.form = Continue{};
  else if (accept(Keyword::Return))
    result.form = Return{};
  else if (!accept(Keyword::Break))
    result = assignmentOrExpression();
  finishStatement(result);
  return result;
}

void Parser::finishStatement(Statement& statement) {
  if (accept(Semicolon)) return;
  statement.prints = true;
  if (!acceptSeparator() && !atEndOfBlock()) refuseToken("the end of the statement");
}

Statement Parser::assignmentOrExpression() {
  const Position at = token_.at;
  ExpressionPtr value = expression();
  if (token_.is(Assign)) return {at, false, assignment(std::move(value))};
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
    if (std::holds_alternative<IgnoredOutput>(each->form)) continue;
    const auto* reference = std::get_if<Reference>(&each->form);
    if (reference == nullptr) refuse("Nothing can be assigned to this", each->at);
    for (const Selector& access : reference->accesses)
      if (access.kind == Selector::Transposed) refuse("Nothing can be assigned to this", access.at);
  }
  advance();
  return {std::move(targets), expression()};
}

If Parser::ifStatement() {
  const Nested nested(*this, false, false);
  If result;
  do {
    ExpressionPtr condition = expression();
    result.branches.push_back({std::move(condition), block()});
  } while (accept(Keyword::ElseIf));
  if (accept(Keyword::Else)) result.branches.push_back({nullptr, block()});
  nested.close(Keyword::End, "\"end\"");
  return result;
}

While Parser::whileStatement() {
  const Nested nested(*this, false, false);
  ExpressionPtr condition = expression();
  While result{std::move(condition), loopBlock()};
  nested.close(Keyword::End, "\"end\"");
  return result;
}

For Parser::forStatement() {
  const Nested nested(*this, false, false);
  std::string variable = expectName("the variable of the loop");
  expect(Assign, "\"=\"");
  ExpressionPtr values = expression();
  For result{std::move(variable), std::move(values), loopBlock()};
  nested.close(Keyword::End, "\"end\"");
  return result;
}

Block Parser::loopBlock() {
  // Counted, because `break` and `continue` are refused outside of loops before anything runs.
  ++loops_;
  Block result = block();
  --loops_;
  return result;
}

void Parser::importStatement() {
  std::string name = expectName("a name");
  bool every = false;
  while (!every && (token_.is(Dot) || token_.is(ElementTimes))) {
    every = token_.is(ElementTimes);
    advance();
    name += every ? ".*" : "." + expectName("a name");
  }
  imports_.push_back(std::move(name));
  if (!atEndOfBlock() && !acceptSeparator()) refuseToken("the end of the statement");
}

FunctionSyntax Parser::function() {
  const Nested nested(*this, false, false);
  FunctionSyntax result;
  result.at = advance().at;
  result.outputs = outputs(result.name);
  result.inputs = inputs();
  result.body = block();
  // In a file of functions each may end with `end`, or with the next one.
  if (!token_.is(Keyword::Function) && !token_.is(TokenKind::EndOfText))
    nested.close(Keyword::End, "\"end\"");
  return result;
}

/// [a, b] = name, a = name, or name alone.
std::vector<std::string> Parser::outputs(std::string& name) {
  std::vector<std::string> result;
  if (accept(OpenBracket)) {
    while (!accept(CloseBracket)) {
      result.push_back(expectName("the name of an output"));
      accept(Comma);
    }
    expect(Assign, "\"=\"");
    name = dottedName();
    return result;
  }
  name = dottedName();
  // Only what follows tells whether that was the name of the function or of its output.
  if (!accept(Assign)) return result;
  result.push_back(std::exchange(name, dottedName()));
  return result;
}

std::vector<std::string> Parser::inputs() {
  std::vector<std::string> result;
  if (!accept(OpenParen) || accept(CloseParen)) return result;
  do result.push_back(accept(Not) ? std::string() : expectName("the name of an input"));
  while (accept(Comma));
  expect(CloseParen, "\",\" or \")\"");
  return result;
}

}  // namespace embedded
