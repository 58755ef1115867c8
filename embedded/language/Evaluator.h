#pragma once

#include <span>
#include <string>
#include <vector>

#include "embedded/language/Indexing.h"
#include "embedded/language/Interpreter.h"
#include "embedded/language/SyntaxTree.h"

namespace embedded {

struct Meaning;

/// Runs code: one evaluator for each text that runs, with the variables that the text sees.
class Evaluator {
 public:
  /// `routine` says what names mean; null for a text that a client evaluates.
  Evaluator(Interpreter& interpreter, Workspace& variables, const Routine* routine)
      : interpreter_(interpreter), variables_(variables), routine_(routine) {}

  /// How a block was left.
  enum class Exit { AtEnd, Break, Continue, Return };
  Exit run(const Block& block);
  Exit runOne(const Statement& statement) { return run(statement); }

  /// The values of an expression: none, one, or several (of a call that is asked for them, c{:}, s.f). `nargout` is
  /// how many its context has a place for.
  Values values(const Expression& expression, std::size_t nargout);
  /// Just one value, or an error.
  ValuePtr value(const Expression& expression);
  /// The statement as one that gives values: at most so many.
  Values valuesOf(const ExpressionStatement& statement, std::size_t nargout);
  /// To the output stream; text costs steps as the elements of an array do.
  void write(const std::u16string& text);

  Workspace& variables() const noexcept { return variables_; }
  const Routine* routine() const noexcept { return routine_; }
  Interpreter& interpreter() const noexcept { return interpreter_; }

 private:
  /// What `end` refers to.
  struct IndexedValue {
    const Value* value;
    std::size_t place;
    std::size_t count;
  };
  class Indexing;
  using Selectors = std::span<const Selector>;

  // Statements.
  Exit run(const Statement& statement);
  Exit run(const If& statement);
  Exit run(const While& statement);
  Exit run(const For& statement);
  void run(const ExpressionStatement& statement, bool prints);
  void run(const Assignment& statement, bool prints);
  void print(const std::string& name, const Value& value);
  bool condition(const Expression& expression);

  // Expressions.
  double number(const Expression& expression);
  ValuePtr value(const Matrix& matrix, Position at);
  ValuePtr value(const Range& range, Position at);
  ValuePtr value(const UnaryExpression& unary, Position at);
  ValuePtr value(const BinaryExpression& binary, Position at);
  ValuePtr shortCircuit(const BinaryExpression& binary);
  ValuePtr lastIndexValue() const;
  Values arguments(const Expressions& expressions);
  void append(Values& all, Values more, std::size_t others);
  std::vector<Subscript> subscripts(const Selector& access, const Value& indexed);

  // References.
  Values reference(const Reference& reference, std::size_t nargout);
  Values follow(Values current, Selectors accesses, std::size_t nargout);
  Values index(const ValuePtr& value, const Selector& access, std::size_t nargout);
  Values cellContents(const Value& value, const Selector& access);
  Values field(const ValuePtr& value, const Selector& access, Selectors& rest, std::size_t nargout);
  Values nameValues(const Reference& reference, std::size_t nargout);
  Values memberOfName(const std::string& name, const Meaning& meaning, const Selector& field, Selectors& rest,
                      std::size_t nargout);
  Values classMember(const Class& oneClass, const Selector& field, Selectors& rest, std::size_t nargout);
  /// The arguments of a call that the next access may hold; advances past that access.
  Values nextArguments(Selectors& accesses);

  // Assignment.
  void assign(const Reference& target, ValuePtr value);
  ValuePtr assigned(const ValuePtr& base, Selectors accesses, ValuePtr value);
  ValuePtr withField(const ValuePtr& base, Selectors accesses, ValuePtr value);
  ValuePtr withIndex(const ValuePtr& base, Selectors accesses, ValuePtr value);
  ValuePtr withCellContent(const ValuePtr& base, Selectors accesses, ValuePtr value);

  Interpreter& interpreter_;
  Workspace& variables_;
  const Routine* routine_;
  const IndexedValue* indexed_ = nullptr;
};

// Statements and expressions are in Evaluator.cpp, references and assignments in EvaluatorAccess.cpp.

}  // namespace embedded
