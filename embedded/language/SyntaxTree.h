#pragma once

// What the parser makes of a text. Whatever a text can make long is a list here, not a depth: operands with operators of
// one rank, the accesses after a name, the branches of an `if`.

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "syntax/Token.h"

namespace embedded {

using syntax::Position;
using syntax::Symbol;

struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;
using Expressions = std::vector<ExpressionPtr>;

struct NumberLiteral {
  double number;
};
/// 'text'
struct TextLiteral {
  std::u16string text;
};
/// "text"
struct StringLiteral {
  std::u16string text;
};
/// `:` as an index.
struct EveryIndex {};
/// `end` inside an index.
struct LastIndex {};
/// `~` in the place of an output.
struct IgnoredOutput {};
/// @name
struct HandleLiteral {
  std::string function;
};
/// [a, b; c, d], or {a, b; c, d} as a cell.
struct Matrix {
  std::vector<Expressions> rows;
  bool isCell;
};
/// first:last or first:step:last
struct Range {
  ExpressionPtr first;
  ExpressionPtr step;  // null: 1
  ExpressionPtr last;
};
/// Signs and negations, the outermost first.
struct UnaryExpression {
  std::vector<Symbol> operators;
  ExpressionPtr operand;
};
/// Operands with operators of one rank between them, evaluated from left to right.
struct BinaryExpression {
  Expressions operands;
  std::vector<Symbol> operators;
};
/// What follows a name or a value: .field or .('field'), (arguments), {indices} or '.
struct Selector {
  enum Kind { Field, Paren, Brace, Transposed } kind;
  Position at;
  std::string field;
  Expressions arguments;
};
struct Reference {
  std::string name;
  std::vector<Selector> accesses;
};
/// (value) or a literal, with accesses.
struct PostfixExpression {
  ExpressionPtr value;
  std::vector<Selector> accesses;
};

struct Expression {
  Position at;
  std::variant<NumberLiteral, TextLiteral, StringLiteral, EveryIndex, LastIndex, IgnoredOutput, HandleLiteral,
               Matrix, Range, UnaryExpression, BinaryExpression, Reference, PostfixExpression>
      form;
};

struct Statement;
using Block = std::vector<Statement>;

struct ExpressionStatement {
  ExpressionPtr value;
};
struct Assignment {
  Expressions targets;  // each a Reference or IgnoredOutput
  ExpressionPtr value;
};
struct Branch {
  ExpressionPtr condition;  // null: else
  Block block;
};
struct If {
  std::vector<Branch> branches;
};
struct While {
  ExpressionPtr condition;
  Block block;
};
struct For {
  std::string variable;
  ExpressionPtr values;
  Block block;
};
struct Break {};
struct Continue {};
struct Return {};

struct Statement {
  Position at;
  /// It is not ended by a semicolon.
  bool prints = false;
  std::variant<ExpressionStatement, Assignment, If, While, For, Break, Continue, Return> form;
};

/// function [outputs] = name(inputs)
struct FunctionSyntax {
  Position at;
  std::string name;
  std::vector<std::string> inputs;
  std::vector<std::string> outputs;
  Block body;
};

/// A whole text: its functions, of which the first is the main one, or statements without any function.
struct Unit {
  std::vector<std::string> imports;
  Block script;
  std::vector<FunctionSyntax> functions;
};

}  // namespace embedded
