#include "embedded/language/Evaluator.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "embedded/language/Calls.h"
#include "embedded/language/Convert.h"
#include "embedded/language/Display.h"
#include "embedded/language/Operators.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

/// One function for each alternative of a variant: a new alternative does not compile until it has one.
template <class... Functions>
struct Cases : Functions... {
  using Functions::operator()...;
};
template <class... Functions>
Cases(Functions...) -> Cases<Functions...>;

bool isObject(const Value& value) { return !value.classId().isNull() || value.opaque() != nullptr; }

}  // namespace

// Statements.

Evaluator::Exit Evaluator::run(const Block& block) {
  const CodeLevel level(interpreter_);
  // The level is for blocks, too: each that nests is a piece of the C++ stack.
  for (const Statement& statement : block)
    if (const Exit exit = run(statement); exit != Exit::AtEnd) return exit;
  return Exit::AtEnd;
}

Evaluator::Exit Evaluator::run(const Statement& statement) {
  // Before the step: an error of the limit of steps is one of this statement.
  interpreter_.at = statement.at;
  interpreter_.step();
  return std::visit(
      Cases{[&](const If& branches) { return run(branches); }, [&](const While& loop) { return run(loop); },
            [&](const For& loop) { return run(loop); }, [](const Break&) { return Exit::Break; },
            [](const Continue&) { return Exit::Continue; }, [](const Return&) { return Exit::Return; },
            [&](const Assignment& assignment) {
              run(assignment, statement.prints);
              return Exit::AtEnd;
            },
            [&](const ExpressionStatement& expression) {
              run(expression, statement.prints);
              return Exit::AtEnd;
            }},
      statement.form);
}

bool Evaluator::condition(const Expression& expression) {
  const ValuePtr result = value(expression);
  // What was evaluated has moved the place, and an error from here on is one of the whole expression.
  interpreter_.at = expression.at;
  return isTrue(interpreter_, *result);
}

Evaluator::Exit Evaluator::run(const If& statement) {
  // A branch without a condition is the last one, "else".
  for (const Branch& branch : statement.branches)
    if (branch.condition == nullptr || condition(*branch.condition)) return run(branch.block);
  return Exit::AtEnd;
}

Evaluator::Exit Evaluator::run(const While& statement) {
  while (condition(*statement.condition)) {
    interpreter_.step();
    const Exit exit = run(statement.block);
    if (exit == Exit::Break) break;
    if (exit == Exit::Return) return exit;
  }
  return Exit::AtEnd;
}

/// Over the columns of the values.
Evaluator::Exit Evaluator::run(const For& statement) {
  // Held for the whole loop: its body may assign to the variable that the value came from.
  const ValuePtr all = value(*statement.values);
  const std::size_t columns = all->rows() == 0 ? 0 : all->columns();
  for (std::size_t column = 0; column < columns; ++column) {
    interpreter_.step();
    // The step above is for loops without a body, whose rounds would cost nothing otherwise.
    const Subscript every{.every = true};
    const Subscript one{.positions = {column}, .size = {1, 1}};
    variables_.set(statement.variable, indexed(interpreter_, *all, std::vector<Subscript>{every, one}));
    const Exit exit = run(statement.block);
    if (exit == Exit::Break) break;
    if (exit == Exit::Return) return exit;
  }
  return Exit::AtEnd;
}

Values Evaluator::valuesOf(const ExpressionStatement& statement, std::size_t nargout) {
  return values(*statement.value, nargout);
}

void Evaluator::run(const ExpressionStatement& statement, bool prints) {
  // A call that gives no value is a statement like any other; where a value is needed it is an error.
  const Values all = values(*statement.value, 0);
  if (!prints) return;
  const auto* reference = std::get_if<Reference>(&statement.value->form);
  const bool isVariable =
      reference != nullptr && reference->accesses.empty() && variables_.find(reference->name) != nullptr;
  for (const ValuePtr& value : all) print(isVariable ? reference->name : std::string(), *value);
}

void Evaluator::run(const Assignment& statement, bool prints) {
  const Position at = interpreter_.at;
  Values all;
  // A missing value is an error of the expression when there is one target, and of the assignment otherwise.
  if (statement.targets.size() == 1)
    all = {value(*statement.value)};
  else
    all = values(*statement.value, statement.targets.size());
  interpreter_.at = at;
  if (all.size() < statement.targets.size())
    interpreter_.fail("KORVAL:code:NoValue", "There are " + std::to_string(statement.targets.size()) +
                                                 " names to assign to, but " + std::to_string(all.size()) +
                                                 " values");
  for (std::size_t index = 0; index < statement.targets.size(); ++index) {
    const auto* target = std::get_if<Reference>(&statement.targets[index]->form);
    // An ignored output: the parser lets nothing else through that is no reference.
    if (target == nullptr) continue;
    assign(*target, all[index]);
    // The whole variable is shown, although perhaps only an element of it was assigned to.
    if (prints) print(target->name, *variables_.find(target->name));
  }
}

void Evaluator::print(const std::string& name, const Value& value) {
  const std::u16string prefix = name.empty() ? u"" : widened(name) + u" = ";
  write(prefix + shownValue(interpreter_, value) + u"\n");
}

void Evaluator::write(const std::u16string& text) {
  // Before it is printed: text costs steps as elements do, and a loop that prints ends at their limit.
  interpreter_.checkSize({text.size()});
  interpreter_.environment.print(text);
}

// Expressions.

/// `end` means the end of this value for as long as this lives.
class Evaluator::Indexing {
 public:
  Indexing(Evaluator& evaluator, const IndexedValue& indexed)
      : evaluator_(evaluator), before_(std::exchange(evaluator.indexed_, &indexed)) {}
  ~Indexing() { evaluator_.indexed_ = before_; }
  Indexing(const Indexing&) = delete;
  Indexing& operator=(const Indexing&) = delete;

 private:
  Evaluator& evaluator_;
  const IndexedValue* before_;
};

ValuePtr Evaluator::value(const Expression& expression) {
  Values all = values(expression, 1);
  if (all.empty()) {
    interpreter_.at = expression.at;
    interpreter_.fail("KORVAL:code:NoValue", "A value is needed here, but there is none");
  }
  return std::move(all.front());
}

Values Evaluator::values(const Expression& expression, std::size_t nargout) {
  const CodeLevel level(interpreter_);
  interpreter_.at = expression.at;
  interpreter_.step();
  const auto one = [](ValuePtr value) { return Values{std::move(value)}; };
  return std::visit(Cases{[&](const NumberLiteral& literal) { return one(newNumber(literal.number)); },
                          [&](const TextLiteral& literal) { return one(newText(literal.text)); },
                          [&](const StringLiteral& literal) { return one(newString(literal.text)); },
                          // Not as an index, which subscripts() sees first, but as the argument of a call.
                          [&](const EveryIndex&) { return one(newText(u":")); },
                          [&](const LastIndex&) { return one(lastIndexValue()); },
                          [&](const IgnoredOutput&) -> Values {
                            interpreter_.fail("KORVAL:code:Syntax", "\"~\" stands here without a value");
                          },
                          [&](const HandleLiteral& handle) {
                            return one(newValue({1, 1}, FunctionHandle{handle.function}));
                          },
                          [&](const Matrix& matrix) { return one(value(matrix, expression.at)); },
                          [&](const Range& range) { return one(value(range, expression.at)); },
                          [&](const UnaryExpression& unary) { return one(value(unary, expression.at)); },
                          [&](const BinaryExpression& binary) { return one(value(binary, expression.at)); },
                          [&](const Reference& found) { return reference(found, nargout); },
                          [&](const PostfixExpression& postfix) {
                            return follow({value(*postfix.value)}, postfix.accesses, nargout);
                          }},
                    expression.form);
}

ValuePtr Evaluator::value(const Matrix& matrix, Position at) {
  std::vector<Values> rows;
  std::size_t count = 0;
  for (const Expressions& row : matrix.rows) {
    rows.emplace_back();
    for (const ExpressionPtr& element : row) append(rows.back(), values(*element, 1), count);
    count += rows.back().size();
  }
  interpreter_.at = at;
  if (!matrix.isCell) return concatenated(interpreter_, rows);
  // A row of braces is a cell with its values, so that a cell among them nests instead of being joined.
  for (Values& row : rows)
    if (const Value::Size size{1, row.size()}; !row.empty())
      row = {newValue(size, Cells{std::exchange(row, {})})};
  // What concatenated() makes of nothing is an empty array of numbers.
  return count == 0 ? newValue({0, 0}, Cells()) : concatenated(interpreter_, rows);
}

double Evaluator::number(const Expression& expression) {
  const ValuePtr result = value(expression);
  interpreter_.at = expression.at;
  return numberOf(interpreter_, *result);
}

ValuePtr Evaluator::value(const Range& range, Position at) {
  // In the order in which they are written, because each may run code.
  const double first = number(*range.first);
  const double step = range.step == nullptr ? 1 : number(*range.step);
  const double last = number(*range.last);
  interpreter_.at = at;
  return rangeOf(interpreter_, first, step, last);
}

ValuePtr Evaluator::value(const UnaryExpression& unary, Position at) {
  ValuePtr result = value(*unary.operand);
  interpreter_.at = at;
  // A step for each: the parser makes one expression of any number of signs.
  for (auto symbol = unary.operators.rbegin(); symbol != unary.operators.rend(); ++symbol) {
    interpreter_.step();
    result = calculated(interpreter_, *symbol, result);
  }
  return result;
}

ValuePtr Evaluator::value(const BinaryExpression& binary, Position at) {
  const Symbol first = binary.operators.front();
  if (first == Symbol::AndAlso || first == Symbol::OrElse) return shortCircuit(binary);
  ValuePtr result = value(*binary.operands.front());
  for (std::size_t index = 0; index < binary.operators.size(); ++index) {
    const ValuePtr right = value(*binary.operands[index + 1]);
    interpreter_.at = at;
    if (isObject(*result) || isObject(*right)) {
      const char* method = methodOf(binary.operators[index]);
      // A method that gives no value leaves the operator its usual meaning.
      if (const auto own = callMethodOfArguments(*this, method, {result, right}, 1); own && !own->empty()) {
        result = own->front();
        continue;
      }
    }
    result = calculated(interpreter_, binary.operators[index], result, right);
  }
  return result;
}

ValuePtr Evaluator::shortCircuit(const BinaryExpression& binary) {
  const bool decisive = binary.operators.front() == Symbol::OrElse;
  // What comes after the decisive operand is not evaluated: it may run code.
  for (const ExpressionPtr& operand : binary.operands)
    if (condition(*operand) == decisive) return newLogical(decisive);
  return newLogical(!decisive);
}

ValuePtr Evaluator::lastIndexValue() const {
  if (indexed_ == nullptr) interpreter_.fail("KORVAL:code:Index", "\"end\" stands for no index here");
  return newNumber(static_cast<double>(lastIndex(*indexed_->value, indexed_->place, indexed_->count)));
}

/// Of a call: `end` in it means what it means around the call, as in x(f(end)).
Values Evaluator::arguments(const Expressions& expressions) {
  Values result;
  for (const ExpressionPtr& expression : expressions) append(result, values(*expression, 1), 0);
  return result;
}

/// To a list beside which so many other values stand.
void Evaluator::append(Values& all, Values more, std::size_t others) {
  interpreter_.checkCount(others + all.size() + more.size());
  interpreter_.step(more.size());
  if (all.empty())
    all = std::move(more);
  else
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

std::vector<Subscript> Evaluator::subscripts(const Selector& access, const Value& indexed) {
  std::vector<Subscript> result;
  for (std::size_t place = 0; place < access.arguments.size(); ++place) {
    const Expression& argument = *access.arguments[place];
    if (std::holds_alternative<EveryIndex>(argument.form)) {
      result.push_back({.every = true});
      continue;
    }
    // One for each index: `end` means the extent of another dimension in each.
    const IndexedValue context{&indexed, place, access.arguments.size()};
    const Indexing indexing(*this, context);
    const ValuePtr index = value(argument);
    interpreter_.at = argument.at;
    result.push_back(subscriptOf(interpreter_, *index));
  }
  return result;
}

}  // namespace embedded
