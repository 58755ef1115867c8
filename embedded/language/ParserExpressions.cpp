#include <array>
#include <span>
#include <utility>

#include "embedded/language/Parser.h"
#include "embedded/model/Unicode.h"

namespace embedded {

using syntax::Token;

namespace {

using enum Symbol;

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

/// In a matrix, "a -b" are two elements and "a - b" is one.
bool Parser::beginsNextElement() const { return inMatrix_ && token_.blankBefore && !token_.blankAfter; }

ExpressionPtr Parser::binary(std::size_t rank) {
  if (rank == ranks.size()) return unary();
  const Position at = token_.at;
  const auto operand = [&] { return rank == rankAboveRange ? range(rank + 1) : binary(rank + 1); };
  ExpressionPtr first = operand();
  BinaryExpression result;
  // A loop and a flat list of operands: long sums need no deep stack.
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
    // Whether it stands where outputs are is not known before the "=" after the matrix.
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
  // In a matrix "a (1)" are two elements, and "a(1)" is one.
  while (!(inMatrix_ && token_.blankBefore)) {
    const Position at = token_.at;
    if (accept(Dot))
      result.push_back({Selector::Field, at, fieldName(), {}});
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

/// After the dot: a name, or ('text') for one that code cannot write.
std::string Parser::fieldName() {
  if (!token_.is(OpenParen)) return expectName("the name of a field");
  const Nested nested(*this, false, false);
  advance();
  const Position at = token_.at;
  if (!token_.is(TokenKind::Text) && !token_.is(TokenKind::String))
    refuseToken("the name of a field as a text");
  std::string name = narrowed(contentOf(advance(), text_));
  if (name.empty()) refuse("The name of a field is not empty", at);
  nested.close(CloseParen, "\")\"");
  return name;
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
  // Elsewhere the word ends a block.
  if (inIndex_ && accept(Keyword::End)) return make(at, LastIndex{});
  if (accept(At)) return make(at, HandleLiteral{dottedName()});
  if (token_.is(OpenBracket) || token_.is(OpenBrace)) return matrix(token_.is(OpenBrace));
  if (!accept(OpenParen)) refuseToken("an expression");
  const Nested nested(*this, false, inIndex_);
  ExpressionPtr inside = expression();
  nested.close(CloseParen, "\")\"");
  // A node of its own: what is in parentheses is one value, and nothing that can be assigned to.
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
    // Not required: blanks part elements too, and a comma may end the row.
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
