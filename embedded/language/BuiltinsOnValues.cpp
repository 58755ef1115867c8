#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "embedded/language/Builtins.h"
#include "embedded/language/Convert.h"

namespace embedded::builtins {

namespace {

Values constant(const BuiltinCall& call, ValuePtr value) {
  call.require(0, 0);
  return {std::move(value)};
}

/// The size that the arguments of zeros(), ones() and cell() mean.
Value::Size sizeOf(const BuiltinCall& call) {
  std::vector<double> extents;
  for (const ValuePtr& argument : call.arguments)
    for (const double extent : numbersOf(call.interpreter, *argument)) extents.push_back(extent);
  if (extents.empty()) extents = {1, 1};
  if (extents.size() == 1) extents.push_back(extents.front());
  Value::Size size;
  for (const double extent : extents) {
    if (std::isnan(extent)) call.interpreter.fail("KORVAL:code:Index", "An extent is a number");
    // Negative extents mean none, and what is too big here is refused as an array below.
    size.push_back(static_cast<std::size_t>(std::clamp(extent, 0.0, 1e18)));
  }
  size = withoutTrailingOnes(std::move(size));
  call.interpreter.checkSize(size);
  return size;
}

Values filled(const BuiltinCall& call, double number) {
  const Value::Size size = sizeOf(call);
  return {newValue(size, std::vector<double>(Value::elementsOf(size), number))};
}

Values onEach(const BuiltinCall& call, double (*function)(double)) {
  call.require(1, 1);
  std::vector<double> numbers = numbersOf(call.interpreter, call[0]);
  for (double& number : numbers) number = function(number);
  return {newValue(call[0].size(), std::move(numbers))};
}

}  // namespace

Values trueValue(const BuiltinCall& call) { return constant(call, newLogical(true)); }
Values falseValue(const BuiltinCall& call) { return constant(call, newLogical(false)); }
Values missing(const BuiltinCall& call) { return constant(call, newString(std::nullopt)); }
Values notANumber(const BuiltinCall& call) {
  return constant(call, newNumber(std::numeric_limits<double>::quiet_NaN()));
}
Values infinity(const BuiltinCall& call) {
  return constant(call, newNumber(std::numeric_limits<double>::infinity()));
}
Values pi(const BuiltinCall& call) { return constant(call, newNumber(std::numbers::pi)); }

Values numel(const BuiltinCall& call) {
  call.require(1, 1);
  return {newNumber(static_cast<double>(call[0].elementCount()))};
}

Values length(const BuiltinCall& call) {
  call.require(1, 1);
  const bool isEmpty = call[0].elementCount() == 0;
  return {newNumber(isEmpty ? 0 : static_cast<double>(std::ranges::max(call[0].size())))};
}

Values isEmpty(const BuiltinCall& call) {
  call.require(1, 1);
  return {newLogical(call[0].elementCount() == 0)};
}

/// All extents as one row, one of them, or one for each of nargout values, the last one holding the rest.
Values size(const BuiltinCall& call) {
  call.require(1, 2);
  const Value::Size& extents = call[0].size();
  if (call.arguments.size() == 2) {
    const double dimension = numberOf(call.interpreter, call[1]);
    if (!(dimension >= 1) || dimension != std::floor(dimension))
      call.interpreter.fail("KORVAL:code:Index", "A dimension is a whole number from 1 on");
    return {newNumber(dimension > static_cast<double>(extents.size())
                          ? 1
                          : static_cast<double>(extents[static_cast<std::size_t>(dimension) - 1]))};
  }
  if (call.nargout < 2)
    return {newValue({1, extents.size()}, std::vector<double>(extents.begin(), extents.end()))};
  Values result;
  for (std::size_t at = 0; at < call.nargout; ++at) {
    double extent = at < extents.size() ? static_cast<double>(extents[at]) : 1;
    for (std::size_t rest = at + 1; at + 1 == call.nargout && rest < extents.size(); ++rest)
      extent *= static_cast<double>(extents[rest]);
    result.push_back(newNumber(extent));
  }
  return result;
}

Values zeros(const BuiltinCall& call) { return filled(call, 0); }
Values ones(const BuiltinCall& call) { return filled(call, 1); }

Values cell(const BuiltinCall& call) {
  const Value::Size size = call.arguments.empty() ? Value::Size{0, 0} : sizeOf(call);
  return {newValue(size, Cells{Values(Value::elementsOf(size))})};
}

/// struct('a', 1, 'b', {{1, 2}}): a cell gives one element each; another value is for all elements.
Values structure(const BuiltinCall& call) {
  if (call.arguments.size() % 2 != 0)
    call.interpreter.fail("KORVAL:code:ArgumentCount", "Fields and values come in pairs");
  Value::Size size{1, 1};
  Structures structures;
  for (std::size_t at = 0; at < call.arguments.size(); at += 2) {
    structures.fields.push_back(narrowTextOf(call.interpreter, call[at]));
    if (call[at + 1].as<Cells>() && call[at + 1].elementCount() != 1) size = call[at + 1].size();
  }
  const std::size_t count = Value::elementsOf(size);
  for (std::size_t at = 1; at < call.arguments.size(); at += 2)
    if (const auto* cells = call[at].as<Cells>();
        cells != nullptr && cells->elements.size() != 1 && cells->elements.size() != count)
      call.interpreter.fail("KORVAL:code:SizeMismatch", "The cells have different sizes");
  call.interpreter.checkSize(size);
  call.interpreter.checkSize({count, structures.fields.size()});
  structures.values.reserve(count * structures.fields.size());
  for (std::size_t element = 0; element < count; ++element) {
    for (std::size_t at = 1; at < call.arguments.size(); at += 2) {
      const auto* cells = call[at].as<Cells>();
      structures.values.push_back(
          cells == nullptr ? call.arguments[at] : cells->elements[cells->elements.size() == 1 ? 0 : element]);
    }
  }
  return {newValue(size, std::move(structures))};
}

Values abs(const BuiltinCall& call) {
  return onEach(call, [](double number) { return std::abs(number); });
}
Values floor(const BuiltinCall& call) {
  return onEach(call, [](double number) { return std::floor(number); });
}

Values isMissing(const BuiltinCall& call) {
  call.require(1, 1);
  call.interpreter.checkSize(call[0].size());
  std::vector<bool> result(call[0].elementCount(), false);
  if (const auto* strings = call[0].as<Strings>())
    std::transform(strings->elements.begin(), strings->elements.end(), result.begin(),
                   [](const auto& text) { return !text; });
  if (const auto* numbers = call[0].as<std::vector<double>>())
    std::transform(numbers->begin(), numbers->end(), result.begin(),
                   [](double number) { return std::isnan(number); });
  return {newValue(call[0].size(), std::move(result))};
}

/// All elements as one, of however many dimensions.
Values sum(const BuiltinCall& call) {
  call.require(1, 1);
  double result = 0;
  for (const double number : numbersOf(call.interpreter, call[0])) result += number;
  return {newNumber(result)};
}

Values any(const BuiltinCall& call) {
  call.require(1, 1);
  return {newLogical(
      std::ranges::any_of(numbersOf(call.interpreter, call[0]), [](double number) { return number != 0; }))};
}

Values all(const BuiltinCall& call) {
  call.require(1, 1);
  return {newLogical(
      std::ranges::all_of(numbersOf(call.interpreter, call[0]), [](double number) { return number != 0; }))};
}

Values modulo(const BuiltinCall& call) {
  call.require(2, 2);
  const double divisor = numberOf(call.interpreter, call[1]);
  std::vector<double> numbers = numbersOf(call.interpreter, call[0]);
  for (double& number : numbers)
    // With the sign of the divisor, unlike std::fmod; by zero a number stays what it is.
    if (divisor != 0) number -= std::floor(number / divisor) * divisor;
  return {newValue(call[0].size(), std::move(numbers))};
}

}  // namespace embedded::builtins
