#include "embedded/language/Parser.h"

#include <array>
#include <span>
#include <utility>

namespace embedded {

using syntax::Keyword;
using syntax::Token;
using syntax::TokenKind;

namespace {

using enum Symbol;

/// How deep brackets and blocks may nest: each level is one of the C++ stack's too.
constexpr std::size_t deepestNesting = 100;

/// Operators by rank, the loosest first; a range stands between the fifth and the sixth.
constexpr Symbol orElse[] = {OrElse};
constexpr Symbol andAlso[] = {AndAlso};
constexpr Symbol either[] = {Or};
constexpr Symbol both[] = {And};
constexpr Symbol comparisons[] = {Less, LessEqual, Greater, GreaterEqual, Equal, NotEqual};
constexpr Symbol sums[] = {Plus, Minus};
constexpr Symbol products[] = {Times, ElementTimes, Divide, ElementDivide};
constexpr std::array<std::span<const Symbol>, 7> ranks = {orElse,      andAlso, either,  both,
                                                          comparisons, sums,    products};
constexpr std::size_t rankAboveRange = 4;

bool isOneOf(const Token& token, std::span<const Symbol> symbols) {
  for (const Symbol symbol : symbols)
    if (token.is(symbol)) return true;
  return false;
}

template <class Form>
ExpressionPtr make(Position at, Form form) {
  return std::make_unique<Expression>(Expression{at, std::move(form)});
}

}  // namespace

/// Inside brackets or a block: one level deeper, with rules of its own for blanks and `end`.
class Parser::Nested {
 public:
  Nested(Parser& parser, bool inMatrix, bool inIndex)
      : parser_(parser), inMatrix_(parser.inMatrix_), inIndex_(parser.inIndex_) {
    if (parser.depth_ == deepestNesting)
      throw CodeError("KORVAL:code:NestingLimit",
                      "The text nests deeper than " + std::to_string(deepestNesting) + " levels",
                      parser.source_, parser.token_.at);
    ++parser.depth_;
    parser.inMatrix_ = inMatrix;
    parser.inIndex_ = inIndex;
  }
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

Parser::Parser(std::u16string_view text, std::string source, Poll poll)
    : text_(text), source_(std::move(source)), poll_(std::move(poll)), tokenizer_(text) {
  token_ = read();
}

// The templates stand before those who use them.

Parser::Token Parser::read() {
  Token token = tokenizer_.next();
  while (token.isRemark()) token = tokenizer_.next();
  if (token.isProblem()) refuse(problemOf(token, text_), token.at);
  return token;
}

Parser::Token Parser::advance() {
  if (++advances_ % 1024 == 0 && poll_) poll_();
  return std::exchange(token_, read());
}

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
  unit.imports = std::move(imports_);
  return unit;
}

bool Parser::acceptSeparator() { return accept(Semicolon) || accept(Comma) || accept(Newline); }

bool Parser::atEndOfBlock() const {
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

/// In a matrix, "a -b" are two elements and "a - b" is one.
bool Parser::beginsNextElement() const { return inMatrix_ && token_.blankBefore && !token_.blankAfter; }

ExpressionPtr Parser::binary(std::size_t rank) {
  if (rank == ranks.size()) return unary();
  const Position at = token_.at;
  const auto operand = [&] { return rank == rankAboveRange ? range(rank + 1) : binary(rank + 1); };
  ExpressionPtr first = operand();
  BinaryExpression result;
  while (isOneOf(token_, ranks[rank]) && !(isOneOf(token_, sums) && beginsNextElement())) {
    if (result.operands.empty()) result.operands.push_back(std::move(first));
    result.operators.push_back(advance().symbol);
    result.operands.push_back(operand());
  }
  return result.operands.empty() ? std::move(first) : make(at, std::move(result));
}

ExpressionPtr Parser::range(std::size_t rank) {
  const Position at = token_.at;
  ExpressionPtr first = binary(rank);
  if (!accept(Colon)) return first;
  ExpressionPtr second = binary(rank);
  if (!accept(Colon)) return make(at, Range{std::move(first), nullptr, std::move(second)});
  return make(at, Range{std::move(first), std::move(second), binary(rank)});
}

ExpressionPtr Parser::unary() {
  const Position at = token_.at;
  UnaryExpression result;
  while (isSign()) {
    result.operators.push_back(advance().symbol);
    const bool ignored = result.operators.back() == Not && (token_.is(Comma) || token_.is(CloseBracket));
    if (ignored && inMatrix_) return make(at, IgnoredOutput{});
  }
  if (result.operators.empty()) return power();
  result.operand = power();
  return make(at, std::move(result));
}

ExpressionPtr Parser::power() {
  const Position at = token_.at;
  ExpressionPtr first = postfix();
  BinaryExpression result;
  while (token_.is(Power) || token_.is(ElementPower)) {
    if (result.operands.empty()) result.operands.push_back(std::move(first));
    result.operators.push_back(advance().symbol);
    result.operands.push_back(powerOperand());
  }
  return result.operands.empty() ? std::move(first) : make(at, std::move(result));
}

bool Parser::isSign() const { return token_.is(Plus) || token_.is(Minus) || token_.is(Not); }

/// 2^-1
ExpressionPtr Parser::powerOperand() {
  const Position at = token_.at;
  UnaryExpression signs;
  while (isSign()) signs.operators.push_back(advance().symbol);
  if (signs.operators.empty()) return postfix();
  signs.operand = postfix();
  return make(at, std::move(signs));
}

ExpressionPtr Parser::postfix() {
  const Position at = token_.at;
  if (token_.is(TokenKind::Name)) {
    Reference reference{nameOf(advance(), text_), {}};
    reference.accesses = accesses();
    return make(at, std::move(reference));
  }
  ExpressionPtr value = primary();
  std::vector<Selector> after = accesses();
  return after.empty() ? std::move(value) : make(at, PostfixExpression{std::move(value), std::move(after)});
}

std::vector<Selector> Parser::accesses() {
  std::vector<Selector> result;
  while (!(inMatrix_ && token_.blankBefore)) {
    const Position at = token_.at;
    if (accept(Dot))
      result.push_back({Selector::Field, at, expectName("the name of a field"), {}});
    else if (accept(OpenParen))
      result.push_back({Selector::Paren, at, {}, arguments(CloseParen)});
    else if (accept(OpenBrace))
      result.push_back({Selector::Brace, at, {}, arguments(CloseBrace)});
    else if (accept(Transpose))
      result.push_back({Selector::Transposed, at, {}, {}});
    else
      break;
  }
  return result;
}

/// After the opening parenthesis or brace.
Expressions Parser::arguments(Symbol closer) {
  const Nested nested(*this, false, true);
  Expressions result;
  if (!token_.is(closer)) {
    do result.push_back(argument());
    while (accept(Comma));
  }
  nested.close(closer, closer == CloseParen ? "\",\" or \")\"" : "\",\" or \"}\"");
  return result;
}

ExpressionPtr Parser::argument() {
  if (!token_.is(Colon)) return expression();
  return make(advance().at, EveryIndex{});
}

ExpressionPtr Parser::primary() {
  const Position at = token_.at;
  if (token_.is(TokenKind::Number)) return make(at, NumberLiteral{numberOf(advance(), text_)});
  if (token_.is(TokenKind::Text)) return make(at, TextLiteral{contentOf(advance(), text_)});
  if (token_.is(TokenKind::String)) return make(at, StringLiteral{contentOf(advance(), text_)});
  if (inIndex_ && accept(Keyword::End)) return make(at, LastIndex{});
  if (accept(At)) return make(at, HandleLiteral{dottedName()});
  if (token_.is(OpenBracket) || token_.is(OpenBrace)) return matrix(token_.is(OpenBrace));
  if (!accept(OpenParen)) refuseToken("an expression");
  const Nested nested(*this, false, inIndex_);
  ExpressionPtr inside = expression();
  nested.close(CloseParen, "\")\"");
  return make(at, PostfixExpression{std::move(inside), {}});
}

ExpressionPtr Parser::matrix(bool isCell) {
  const Position at = advance().at;
  const Symbol closer = isCell ? CloseBrace : CloseBracket;
  const Nested nested(*this, true, inIndex_);
  Matrix result{{}, isCell};
  while (!token_.is(closer)) {
    if (accept(Semicolon) || accept(Newline)) continue;
    result.rows.push_back(row());
    if (!endsRow()) refuseToken(isCell ? "\",\", \";\" or \"}\"" : "\",\", \";\" or \"]\"");
  }
  nested.close(closer, "the end of the matrix");
  return make(at, std::move(result));
}

bool Parser::endsRow() const {
  return token_.is(Semicolon) || token_.is(Newline) || token_.is(CloseBracket) || token_.is(CloseBrace);
}

Expressions Parser::row() {
  Expressions result;
  do {
    result.push_back(expression());
    accept(Comma);
  } while (!endsRow() && !token_.is(TokenKind::EndOfText) && !token_.is(CloseParen));
  return result;
}

std::string Parser::dottedName() {
  std::string name = expectName("a name");
  while (accept(Dot)) name += "." + expectName("a name");
  return name;
}

}  // namespace embedded
