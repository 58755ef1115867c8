#include <array>
#include <span>

#include "embedded/language/Nested.h"

namespace embedded {

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
bool Parser::beginsNextElement() const { return inMatrix_ && token_.blankBefore && !token_.blankBehind; }

ExpressionPtr Parser::chain(std::size_t rank) {
  if (rank == ranks.size()) return prefixed();
  const Position at = token_.at;
  const auto operand = [&] { return rank == rankAboveRange ? range(rank + 1) : chain(rank + 1); };
  ExpressionPtr first = operand();
  Chain chain;
  while (isOneOf(token_, ranks[rank]) && !(isOneOf(token_, sums) && beginsNextElement())) {
    if (chain.operands.empty()) chain.operands.push_back(std::move(first));
    chain.operators.push_back(take().symbol);
    chain.operands.push_back(operand());
  }
  return chain.operands.empty() ? std::move(first) : make(at, std::move(chain));
}

ExpressionPtr Parser::range(std::size_t rank) {
  const Position at = token_.at;
  ExpressionPtr first = chain(rank);
  if (!accept(Colon)) return first;
  ExpressionPtr second = chain(rank);
  if (!accept(Colon)) return make(at, Range{std::move(first), nullptr, std::move(second)});
  return make(at, Range{std::move(first), std::move(second), chain(rank)});
}

ExpressionPtr Parser::prefixed() {
  const Position at = token_.at;
  Prefixed result;
  while (token_.is(Plus) || token_.is(Minus) || token_.is(Not)) {
    result.operators.push_back(take().symbol);
    const bool unwanted = result.operators.back() == Not && (token_.is(Comma) || token_.is(CloseBracket));
    if (unwanted && inMatrix_) return make(at, Unwanted{});
  }
  if (result.operators.empty()) return power();
  result.operand = power();
  return make(at, std::move(result));
}

ExpressionPtr Parser::power() {
  const Position at = token_.at;
  ExpressionPtr first = accessed();
  Chain chain;
  while (token_.is(Power) || token_.is(ElementPower)) {
    if (chain.operands.empty()) chain.operands.push_back(std::move(first));
    chain.operators.push_back(take().symbol);
    chain.operands.push_back(powerOperand());
  }
  return chain.operands.empty() ? std::move(first) : make(at, std::move(chain));
}

/// 2^-1
ExpressionPtr Parser::powerOperand() {
  const Position at = token_.at;
  Prefixed signs;
  while (token_.is(Plus) || token_.is(Minus) || token_.is(Not)) signs.operators.push_back(take().symbol);
  if (signs.operators.empty()) return accessed();
  signs.operand = accessed();
  return make(at, std::move(signs));
}

ExpressionPtr Parser::accessed() {
  const Position at = token_.at;
  if (token_.kind == Token::Name) {
    Reference reference{take().name, {}};
    reference.accesses = accesses();
    return make(at, std::move(reference));
  }
  ExpressionPtr value = primary();
  std::vector<Selector> behind = accesses();
  return behind.empty() ? std::move(value) : make(at, Accessed{std::move(value), std::move(behind)});
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

/// The opening parenthesis or brace has been taken.
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
  return make(take().at, EveryIndex{});
}

ExpressionPtr Parser::primary() {
  const Position at = token_.at;
  if (token_.kind == Token::Number) return make(at, NumberLiteral{take().number});
  if (token_.kind == Token::Text) return make(at, TextLiteral{take().text});
  if (token_.kind == Token::String) return make(at, StringLiteral{take().text});
  if (inIndex_ && accept(End)) return make(at, LastIndex{});
  if (accept(At)) return make(at, HandleLiteral{dottedName()});
  if (token_.is(OpenBracket) || token_.is(OpenBrace)) return matrix(token_.is(OpenBrace));
  if (!accept(OpenParen)) refuse("an expression");
  const Nested nested(*this, false, inIndex_);
  ExpressionPtr inside = expression();
  nested.close(CloseParen, "\")\"");
  Accessed accessed{std::move(inside), {}};
  return make(at, std::move(accessed));
}

ExpressionPtr Parser::matrix(bool isCell) {
  const Position at = take().at;
  const Symbol closer = isCell ? CloseBrace : CloseBracket;
  const Nested nested(*this, true, inIndex_);
  Matrix result{{}, isCell};
  while (!token_.is(closer)) {
    if (accept(Semicolon) || accept(Newline)) continue;
    result.rows.push_back(row());
    if (!endsRow()) refuse(isCell ? "\",\", \";\" or \"}\"" : "\",\", \";\" or \"]\"");
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
  } while (!endsRow() && token_.kind != Token::EndOfText && !token_.is(CloseParen));
  return result;
}

std::string Parser::dottedName() {
  std::string name = expectName("a name");
  while (accept(Dot)) name += "." + expectName("a name");
  return name;
}

}  // namespace embedded
