#include "embedded/language/Operators.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "embedded/language/Convert.h"

namespace embedded {

namespace {

struct Effect {
  Symbol symbol;
  const char* method;
  double (*numbers)(double, double);
  bool isLogical;
};

constexpr std::array<Effect, 16> effects = {{
    {Symbol::Plus, "plus", [](double a, double b) { return a + b; }, false},
    {Symbol::Minus, "minus", [](double a, double b) { return a - b; }, false},
    {Symbol::Times, "mtimes", [](double a, double b) { return a * b; }, false},
    {Symbol::ElementTimes, "times", [](double a, double b) { return a * b; }, false},
    {Symbol::Divide, "mrdivide", [](double a, double b) { return a / b; }, false},
    {Symbol::ElementDivide, "rdivide", [](double a, double b) { return a / b; }, false},
    {Symbol::Power, "mpower", [](double a, double b) { return std::pow(a, b); }, false},
    {Symbol::ElementPower, "power", [](double a, double b) { return std::pow(a, b); }, false},
    {Symbol::Less, "lt", [](double a, double b) { return a < b ? 1.0 : 0.0; }, true},
    {Symbol::LessEqual, "le", [](double a, double b) { return a <= b ? 1.0 : 0.0; }, true},
    {Symbol::Greater, "gt", [](double a, double b) { return a > b ? 1.0 : 0.0; }, true},
    {Symbol::GreaterEqual, "ge", [](double a, double b) { return a >= b ? 1.0 : 0.0; }, true},
    {Symbol::Equal, "eq", [](double a, double b) { return a == b ? 1.0 : 0.0; }, true},
    {Symbol::NotEqual, "ne", [](double a, double b) { return a != b ? 1.0 : 0.0; }, true},
    {Symbol::And, "and", [](double a, double b) { return a != 0 && b != 0 ? 1.0 : 0.0; }, true},
    {Symbol::Or, "or", [](double a, double b) { return a != 0 || b != 0 ? 1.0 : 0.0; }, true},
}};

/// Of an operator between two values, but for && and ||, which are no effects of two values. All others are in the
/// table, so that the search needs no way out.
const Effect& effectOf(Symbol symbol) { return *std::ranges::find(effects, symbol, &Effect::symbol); }

/// The common size: a single element goes with any number of them.
const Value& sizeModel(Interpreter& interpreter, const Value& left, const Value& right) {
  if (left.elementCount() != 1 && right.elementCount() != 1 && left.size() != right.size())
    interpreter.fail("KORVAL:code:SizeMismatch", "The two values have different sizes");
  return left.elementCount() == 1 ? right : left;
}

template <class Result, class Elements, class Operation>
std::vector<Result> elementwise(Interpreter& interpreter, const Elements& left, const Elements& right,
                                std::size_t count, Operation operation) {
  interpreter.checkSize({count});
  std::vector<Result> result;
  result.reserve(count);
  for (std::size_t at = 0; at < count; ++at)
    result.push_back(
        static_cast<Result>(operation(left[left.size() == 1 ? 0 : at], right[right.size() == 1 ? 0 : at])));
  return result;
}

ValuePtr onNumbers(Interpreter& interpreter, const Effect& effect, const Value& left, const Value& right) {
  const Value& model = sizeModel(interpreter, left, right);
  const std::size_t count = model.elementCount();
  const std::vector<double> a = numbersOf(interpreter, left);
  const std::vector<double> b = numbersOf(interpreter, right);
  if (effect.isLogical)
    return newValue(model.size(), elementwise<bool>(interpreter, a, b, count, effect.numbers));
  return newValue(model.size(), elementwise<double>(interpreter, a, b, count, effect.numbers));
}

ValuePtr matrixProduct(Interpreter& interpreter, const Value& left, const Value& right) {
  const std::size_t rows = left.rows();
  const std::size_t inner = left.columns();
  const std::size_t columns = right.columns();
  if (left.size().size() > 2 || right.size().size() > 2 || inner != right.rows())
    interpreter.fail("KORVAL:code:SizeMismatch",
                     "The columns of the left matrix are not the rows of the right one");
  interpreter.checkSize({rows, columns});
  const std::vector<double> a = numbersOf(interpreter, left);
  const std::vector<double> b = numbersOf(interpreter, right);
  std::vector<double> result(rows * columns);
  for (std::size_t column = 0; column < columns; ++column) {
    for (std::size_t row = 0; row < rows; ++row) {
      interpreter.step(inner);
      for (std::size_t at = 0; at < inner; ++at)
        result[row + column * rows] += a[row + at * rows] * b[at + column * inner];
    }
  }
  return newValue({rows, columns}, std::move(result));
}

/// A missing string equals nothing.
ValuePtr onStrings(Interpreter& interpreter, Symbol symbol, const ValuePtr& left, const ValuePtr& right) {
  const Values both = {asStrings(interpreter, left), asStrings(interpreter, right)};
  const Value& model = sizeModel(interpreter, *both[0], *both[1]);
  const std::size_t count = model.elementCount();
  const auto& a = both[0]->as<Strings>()->elements;
  const auto& b = both[1]->as<Strings>()->elements;
  interpreter.step(lengthOf(*both[0]->as<Strings>()) + lengthOf(*both[1]->as<Strings>()));
  const bool equal = symbol == Symbol::Equal;
  if (equal || symbol == Symbol::NotEqual)
    return newValue(model.size(),
                    elementwise<bool>(interpreter, a, b, count, [equal](const auto& one, const auto& other) {
                      return (one && other && *one == *other) == equal;
                    }));
  if (symbol != Symbol::Plus)
    interpreter.fail("KORVAL:code:WrongType",
                     std::string("The operator \"") + methodOf(symbol) + "\" has no meaning for strings");
  interpreter.checkSize({count}, sizeof(std::optional<std::u16string>));
  Strings result;
  result.elements.reserve(count);
  std::size_t length = 0;
  for (std::size_t at = 0; at < count; ++at) {
    const auto& one = a[a.size() == 1 ? 0 : at];
    const auto& other = b[b.size() == 1 ? 0 : at];
    // Long texts may grow from few elements, so all of them together are an array's worth at most.
    const std::size_t more = one && other ? one->size() + other->size() : 0;
    if ((length += more) > interpreter.limits.elements) interpreter.checkSize({length});
    interpreter.step(more);
    result.elements.push_back(one && other ? std::optional(*one + *other) : std::nullopt);
  }
  return newValue(model.size(), std::move(result));
}

/// Enumeration members; no elements when the value holds anything else.
std::vector<const Object*> membersOf(Interpreter& interpreter, const Value& value) {
  std::vector<const Object*> members;
  if (value.object() == nullptr) return members;
  interpreter.checkSize({value.elementCount()});
  if (const auto* one = value.as<Object>()) members.push_back(one);
  if (const auto* array = value.as<Objects>())
    for (const ValuePtr& element : array->elements) members.push_back(element->as<Object>());
  const bool all =
      std::ranges::all_of(members, [](const Object* one) { return one && !one->member.empty(); });
  return all ? members : std::vector<const Object*>();
}

ValuePtr onMembers(Interpreter& interpreter, bool equal, const Value& left, const Value& right) {
  const Value& model = sizeModel(interpreter, left, right);
  return newValue(
      model.size(),
      elementwise<bool>(interpreter, membersOf(interpreter, left), membersOf(interpreter, right),
                        model.elementCount(), [equal](const Object* one, const Object* other) {
                          return (one->classId == other->classId && one->member == other->member) == equal;
                        }));
}

}  // namespace

const char* methodOf(Symbol binary) { return effectOf(binary).method; }

ValuePtr calculated(Interpreter& interpreter, Symbol binary, const ValuePtr& left, const ValuePtr& right) {
  const bool compares = binary == Symbol::Equal || binary == Symbol::NotEqual;
  // Members are objects, for which nothing below has a meaning.
  if (compares && !membersOf(interpreter, *left).empty() && !membersOf(interpreter, *right).empty())
    return onMembers(interpreter, binary == Symbol::Equal, *left, *right);
  if (left->as<Strings>() || right->as<Strings>()) return onStrings(interpreter, binary, left, right);
  const bool scalar = left->elementCount() == 1 || right->elementCount() == 1;
  if (binary == Symbol::Times && !scalar) return matrixProduct(interpreter, *left, *right);
  if ((binary == Symbol::Divide && right->elementCount() != 1) ||
      (binary == Symbol::Power && !(left->elementCount() == 1 && right->elementCount() == 1)))
    interpreter.fail("KORVAL:code:WrongType",
                     "Division by a matrix and powers of a matrix are not understood");
  return onNumbers(interpreter, effectOf(binary), *left, *right);
}

ValuePtr calculated(Interpreter& interpreter, Symbol prefix, const ValuePtr& operand) {
  std::vector<double> numbers = numbersOf(interpreter, *operand);
  if (prefix == Symbol::Not) {
    std::vector<bool> result;
    result.reserve(numbers.size());
    for (const double number : numbers) result.push_back(number == 0);
    return newValue(operand->size(), std::move(result));
  }
  // A plus does nothing but make numbers of what is none.
  if (prefix == Symbol::Minus)
    for (double& number : numbers) number = -number;
  return newValue(operand->size(), std::move(numbers));
}

ValuePtr rangeOf(Interpreter& interpreter, double first, double step, double last) {
  // Of 0:0.1:1 the last element is meant too, though the quotient is a little less than a whole number.
  const double count = std::floor((last - first) / step * (1 + 1e-15)) + 1;
  if (!(count >= 1) || step == 0) return newValue({1, 0}, std::vector<double>());
  // Converting what is beyond would be undefined; the check refuses such a length anyway.
  const auto length = static_cast<std::size_t>(std::min(count, 1e18));
  interpreter.checkSize({1, length});
  std::vector<double> numbers(length);
  for (std::size_t at = 0; at < length; ++at) numbers[at] = first + static_cast<double>(at) * step;
  return newValue({1, length}, std::move(numbers));
}

}  // namespace embedded
