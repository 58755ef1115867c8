#include <algorithm>

#include "embedded/language/Calls.h"
#include "embedded/language/Concatenation.h"
#include "embedded/language/Convert.h"
#include "embedded/language/Evaluator.h"
#include "embedded/language/Operators.h"

namespace embedded {

namespace {

bool isObject(const Value& value) { return value.object() != nullptr || value.opaque() != nullptr; }

}  // namespace

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
    failCode("KORVAL:code:NoValue", "A value is needed here, but there is none");
  }
  return std::move(all.front());
}

Values Evaluator::values(const Expression& expression, std::size_t wanted) {
  const CodeLevel level(interpreter_);
  interpreter_.at = expression.at;
  interpreter_.step();
  const auto& form = expression.form;
  if (const auto* found = std::get_if<Reference>(&form)) return reference(*found, wanted);
  if (const auto* found = std::get_if<PostfixExpression>(&form))
    return follow({value(*found->value)}, found->accesses, wanted);
  if (const auto* number = std::get_if<NumberLiteral>(&form)) return {newNumber(number->number)};
  if (const auto* text = std::get_if<TextLiteral>(&form)) return {newText(text->text)};
  if (const auto* text = std::get_if<StringLiteral>(&form)) return {newString(text->text)};
  if (const auto* handle = std::get_if<HandleLiteral>(&form))
    return {newValue({1, 1}, FunctionHandle{handle->function})};
  if (const auto* matrix = std::get_if<Matrix>(&form)) return {value(*matrix, expression.at)};
  if (const auto* range = std::get_if<Range>(&form)) return {value(*range, expression.at)};
  if (const auto* unary = std::get_if<UnaryExpression>(&form)) return {value(*unary, expression.at)};
  if (const auto* binary = std::get_if<BinaryExpression>(&form)) return {value(*binary, expression.at)};
  if (std::holds_alternative<LastIndex>(form)) return {lastIndexValue()};
  if (std::holds_alternative<EveryIndex>(form)) return {newText(u":")};
  failCode("KORVAL:code:Syntax", "\"~\" stands here without a value");
}

ValuePtr Evaluator::value(const Matrix& matrix, Position at) {
  std::vector<Values> rows;
  for (const Expressions& row : matrix.rows) {
    rows.emplace_back();
    for (const ExpressionPtr& element : row)
      for (ValuePtr& value : values(*element, 1)) {
        interpreter_.pollAt(rows.back().size());
        rows.back().push_back(matrix.isCell ? newValue({1, 1}, Cells{{std::move(value)}}) : std::move(value));
      }
  }
  if (matrix.isCell && rows.empty()) return newValue({0, 0}, Cells());
  interpreter_.at = at;
  return concatenated(rows);
}

double Evaluator::number(const Expression& expression) {
  const ValuePtr result = value(expression);
  interpreter_.at = expression.at;
  return numberOf(*result);
}

ValuePtr Evaluator::value(const Range& range, Position at) {
  const double first = number(*range.first);
  const double step = range.step == nullptr ? 1 : number(*range.step);
  const double last = number(*range.last);
  interpreter_.at = at;
  return rangeOf(first, step, last);
}

ValuePtr Evaluator::value(const UnaryExpression& unary, Position at) {
  ValuePtr result = value(*unary.operand);
  interpreter_.at = at;
  for (auto symbol = unary.operators.rbegin(); symbol != unary.operators.rend(); ++symbol) {
    interpreter_.step();
    result = calculated(*symbol, result);
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
      if (const auto own = callMethodOfArguments(*this, method, {result, right}, 1); own && !own->empty()) {
        result = own->front();
        continue;
      }
    }
    result = calculated(binary.operators[index], result, right);
  }
  return result;
}

ValuePtr Evaluator::shortCircuit(const BinaryExpression& binary) {
  const bool decisive = binary.operators.front() == Symbol::OrElse;
  for (const ExpressionPtr& operand : binary.operands)
    if (condition(*operand) == decisive) return newLogical(decisive);
  return newLogical(!decisive);
}

ValuePtr Evaluator::lastIndexValue() const {
  if (indexed_ == nullptr) failCode("KORVAL:code:Index", "\"end\" stands for no index here");
  return newNumber(static_cast<double>(lastIndex(*indexed_->value, indexed_->place, indexed_->count)));
}

/// Of a call: `end` in it means what it means around the call, as in x(f(end)).
Values Evaluator::arguments(const Expressions& expressions) {
  Values result;
  for (const ExpressionPtr& expression : expressions) {
    Values more = values(*expression, 1);
    result.insert(result.end(), more.begin(), more.end());
  }
  return result;
}

std::vector<Subscript> Evaluator::subscripts(const Selector& access, const Value& indexed) {
  std::vector<Subscript> result;
  for (std::size_t place = 0; place < access.arguments.size(); ++place) {
    const Expression& argument = *access.arguments[place];
    if (std::holds_alternative<EveryIndex>(argument.form)) {
      result.push_back({.every = true});
      continue;
    }
    const IndexedValue context{&indexed, place, access.arguments.size()};
    const Indexing indexing(*this, context);
    const ValuePtr index = value(argument);
    interpreter_.at = argument.at;
    result.push_back(subscriptOf(*index));
  }
  return result;
}

}  // namespace embedded
