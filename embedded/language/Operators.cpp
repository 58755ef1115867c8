#include "embedded/language/Operators.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "embedded/host/Session.h"
#include "embedded/language/Convert.h"

namespace embedded {

namespace {

struct Effect {
  const char* method;
  double (*numbers)(double, double);
  bool isLogical;
};

/// In the order of Symbol, from Plus on.
constexpr std::array<Effect, 16> effects = {{
    {"plus", [](double a, double b) { return a + b; }, false},
    {"minus", [](double a, double b) { return a - b; }, false},
    {"mtimes", [](double a, double b) { return a * b; }, false},
    {"times", [](double a, double b) { return a * b; }, false},
    {"mrdivide", [](double a, double b) { return a / b; }, false},
    {"rdivide", [](double a, double b) { return a / b; }, false},
    {"mpower", [](double a, double b) { return std::pow(a, b); }, false},
    {"power", [](double a, double b) { return std::pow(a, b); }, false},
    {"lt", [](double a, double b) { return a < b ? 1.0 : 0.0; }, true},
    {"le", [](double a, double b) { return a <= b ? 1.0 : 0.0; }, true},
    {"gt", [](double a, double b) { return a > b ? 1.0 : 0.0; }, true},
    {"ge", [](double a, double b) { return a >= b ? 1.0 : 0.0; }, true},
    {"eq", [](double a, double b) { return a == b ? 1.0 : 0.0; }, true},
    {"ne", [](double a, double b) { return a != b ? 1.0 : 0.0; }, true},
    {"and", [](double a, double b) { return a != 0 && b != 0 ? 1.0 : 0.0; }, true},
    {"or", [](double a, double b) { return a != 0 || b != 0 ? 1.0 : 0.0; }, true},
}};

const Effect& effectOf(Symbol symbol) {
  return effects[static_cast<std::size_t>(symbol) - static_cast<std::size_t>(Symbol::Plus)];
}

/// The common size: a single element goes with any number of them.
const Value& sizeModel(const Value& left, const Value& right) {
  if (left.elementCount() != 1 && right.elementCount() != 1 && left.size() != right.size())
    failCode("KORVAL:code:SizeMismatch", "The two values have different sizes");
  return left.elementCount() == 1 ? right : left;
}

template <class Result, class Elements, class Operation>
std::vector<Result> elementwise(const Elements& left, const Elements& right, std::size_t count,
                                Operation operation) {
  std::vector<Result> result;
  result.reserve(count);
  session().interpreter.checkSize({count});
  for (std::size_t at = 0; at < count; ++at)
    result.push_back(
        static_cast<Result>(operation(left[left.size() == 1 ? 0 : at], right[right.size() == 1 ? 0 : at])));
  return result;
}

ValuePtr onNumbers(const Effect& effect, const Value& left, const Value& right) {
  const Value& model = sizeModel(left, right);
  const std::size_t count = model.elementCount();
  const std::vector<double> a = numbersOf(left);
  const std::vector<double> b = numbersOf(right);
  if (effect.isLogical) return newValue(model.size(), elementwise<bool>(a, b, count, effect.numbers));
  return newValue(model.size(), elementwise<double>(a, b, count, effect.numbers));
}

ValuePtr matrixProduct(const Value& left, const Value& right) {
  const std::size_t rows = left.rows();
  const std::size_t inner = left.columns();
  const std::size_t columns = right.columns();
  if (left.size().size() > 2 || right.size().size() > 2 || inner != right.rows())
    failCode("KORVAL:code:SizeMismatch", "The columns of the left matrix are not the rows of the right one");
  session().interpreter.checkSize({rows, columns});
  const std::vector<double> a = numbersOf(left);
  const std::vector<double> b = numbersOf(right);
  std::vector<double> result(rows * columns);
  for (std::size_t column = 0; column < columns; ++column) {
    for (std::size_t row = 0; row < rows; ++row) {
      session().interpreter.step(1 + inner / 16);
      for (std::size_t at = 0; at < inner; ++at)
        result[row + column * rows] += a[row + at * rows] * b[at + column * inner];
    }
  }
  return newValue({rows, columns}, std::move(result));
}

/// A missing string equals nothing.
ValuePtr onStrings(Symbol symbol, const ValuePtr& left, const ValuePtr& right) {
  const Values both = {asStrings(left), asStrings(right)};
  const Value& model = sizeModel(*both[0], *both[1]);
  const std::size_t count = model.elementCount();
  const auto& a = both[0]->as<Strings>()->elements;
  const auto& b = both[1]->as<Strings>()->elements;
  const bool equal = symbol == Symbol::Equal;
  if (equal || symbol == Symbol::NotEqual)
    return newValue(model.size(), elementwise<bool>(a, b, count, [equal](const auto& one, const auto& other) {
                      return (one && other && *one == *other) == equal;
                    }));
  if (symbol != Symbol::Plus)
    failCode("KORVAL:code:WrongType",
             std::string("The operator \"") + methodOf(symbol) + "\" has no meaning for strings");
  Strings result;
  for (std::size_t at = 0; at < count; ++at) {
    const auto& one = a[a.size() == 1 ? 0 : at];
    const auto& other = b[b.size() == 1 ? 0 : at];
    if (one && other) session().interpreter.checkSize({one->size() + other->size()});
    result.elements.push_back(one && other ? std::optional(*one + *other) : std::nullopt);
  }
  return newValue(model.size(), std::move(result));
}

/// Enumeration members; no elements when the value holds anything else.
std::vector<const Object*> membersOf(const Value& value) {
  std::vector<const Object*> members;
  if (const auto* one = value.as<Object>()) members.push_back(one);
  if (const auto* array = value.as<Objects>())
    for (const ValuePtr& element : array->elements) members.push_back(element->as<Object>());
  const bool all =
      std::ranges::all_of(members, [](const Object* one) { return one && !one->member.empty(); });
  return all ? members : std::vector<const Object*>();
}

ValuePtr onMembers(bool equal, const Value& left, const Value& right) {
  const Value& model = sizeModel(left, right);
  return newValue(model.size(), elementwise<bool>(membersOf(left), membersOf(right), model.elementCount(),
                                                  [equal](const Object* one, const Object* other) {
                                                    return (one->classId == other->classId &&
                                                            one->member == other->member) == equal;
                                                  }));
}

}  // namespace

const char* methodOf(Symbol binary) { return effectOf(binary).method; }

ValuePtr calculated(Symbol binary, const ValuePtr& left, const ValuePtr& right) {
  const bool compares = binary == Symbol::Equal || binary == Symbol::NotEqual;
  if (compares && !membersOf(*left).empty() && !membersOf(*right).empty())
    return onMembers(binary == Symbol::Equal, *left, *right);
  if (left->as<Strings>() || right->as<Strings>()) return onStrings(binary, left, right);
  const bool scalar = left->elementCount() == 1 || right->elementCount() == 1;
  if (binary == Symbol::Times && !scalar) return matrixProduct(*left, *right);
  if ((binary == Symbol::Divide && right->elementCount() != 1) ||
      (binary == Symbol::Power && !(left->elementCount() == 1 && right->elementCount() == 1)))
    failCode("KORVAL:code:WrongType", "Division by a matrix and powers of a matrix are not understood");
  return onNumbers(effectOf(binary), *left, *right);
}

ValuePtr calculated(Symbol prefix, const ValuePtr& operand) {
  std::vector<double> numbers = numbersOf(*operand);
  if (prefix == Symbol::Not) {
    std::vector<bool> result;
    for (const double number : numbers) result.push_back(number == 0);
    return newValue(operand->size(), std::move(result));
  }
  if (prefix == Symbol::Minus)
    for (double& number : numbers) number = -number;
  return newValue(operand->size(), std::move(numbers));
}

ValuePtr rangeOf(double first, double step, double last) {
  const double count = std::floor((last - first) / step * (1 + 1e-15)) + 1;
  if (!(count >= 1) || step == 0) return newValue({1, 0}, std::vector<double>());
  Interpreter& interpreter = session().interpreter;
  const auto length = static_cast<std::size_t>(std::min(count, 1e18));
  interpreter.checkSize({1, length});
  std::vector<double> numbers(length);
  for (std::size_t at = 0; at < length; ++at) numbers[at] = first + static_cast<double>(at) * step;
  return newValue({1, length}, std::move(numbers));
}

}  // namespace embedded
