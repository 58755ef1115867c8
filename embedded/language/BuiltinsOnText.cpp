#include <algorithm>

#include "embedded/language/Builtins.h"
#include "embedded/language/Convert.h"
#include "embedded/language/Display.h"
#include "embedded/language/Evaluator.h"
#include "embedded/model/Unicode.h"

namespace embedded::builtins {

namespace {

Values rest(const BuiltinCall& call, std::size_t first) {
  return {call.arguments.begin() + static_cast<std::ptrdiff_t>(first), call.arguments.end()};
}

void print(const BuiltinCall& call, const std::u16string& text) { call.caller.write(text); }

bool isIdentifier(const std::string& text) {
  // A message may hold a colon, too, but then hardly without a blank.
  return text.find(':') != std::string::npos && text.find_first_of(" %\\") == std::string::npos;
}

/// Null for a value that is no text.
const std::u16string* textIn(Interpreter& interpreter, const ValuePtr& value) {
  interpreter.step();
  return value == nullptr || !isText(*value) ? nullptr : &textOf(interpreter, *value);
}

/// With the letters from `first` to `last` moved.
Values changedCase(const BuiltinCall& call, char16_t first, char16_t last, int shift) {
  call.require(1, 1);
  const auto changed = [&](std::u16string text) {
    // ASCII letters only, so that the length never changes.
    for (char16_t& unit : text)
      if (unit >= first && unit <= last) unit = static_cast<char16_t>(unit + shift);
    return text;
  };
  if (call[0].as<Strings>()) {
    call.interpreter.checkSize(call[0].size(), sizeof(std::optional<std::u16string>));
    call.interpreter.step(lengthOf(*call[0].as<Strings>()));
    Strings strings = *call[0].as<Strings>();
    for (auto& text : strings.elements)
      if (text) text = changed(*text);
    return {newValue(call[0].size(), std::move(strings))};
  }
  return {newText(changed(textOf(call.interpreter, call[0])))};
}

}  // namespace

Values disp(const BuiltinCall& call) {
  call.require(1, 1);
  print(call, displayed(call.interpreter, call[0]) + u"\n");
  return {};
}

Values fprintf(const BuiltinCall& call) {
  call.require(1, 1000);
  print(call, formatted(call.interpreter, textOf(call.interpreter, call[0]), rest(call, 1)));
  return {};
}

Values sprintf(const BuiltinCall& call) {
  call.require(1, 1000);
  return {newText(formatted(call.interpreter, textOf(call.interpreter, call[0]), rest(call, 1)))};
}

/// error('group:name', 'format', ...), or error('format', ...).
Values error(const BuiltinCall& call) {
  call.require(1, 1000);
  const std::string first = narrowTextOf(call.interpreter, call[0]);
  if (call.arguments.size() > 1 && isIdentifier(first))
    call.interpreter.fail(
        first, narrowed(formatted(call.interpreter, textOf(call.interpreter, call[1]), rest(call, 2))));
  call.interpreter.fail(
      "KORVAL:code:Raised",
      narrowed(formatted(call.interpreter, textOf(call.interpreter, call[0]), rest(call, 1))));
}

/// Two texts, or a text and a cell, or two cells of one size.
Values strcmp(const BuiltinCall& call) {
  call.require(2, 2);
  const auto* left = call[0].as<Cells>();
  const auto* right = call[1].as<Cells>();
  const auto equal = [&call](const ValuePtr& one, const ValuePtr& other) {
    const std::u16string* text = textIn(call.interpreter, one);
    const std::u16string* otherText = text == nullptr ? nullptr : textIn(call.interpreter, other);
    return otherText != nullptr && *text == *otherText;
  };
  // What is no text equals nothing, and is no error.
  if (left == nullptr && right == nullptr) return {newLogical(equal(call.arguments[0], call.arguments[1]))};
  const Value& model = left != nullptr ? call[0] : call[1];
  if (left != nullptr && right != nullptr && left->elements.size() != right->elements.size())
    call.interpreter.fail("KORVAL:code:SizeMismatch", "The cells have different sizes");
  call.interpreter.checkSize(model.size());
  std::vector<bool> result;
  result.reserve(model.elementCount());
  for (std::size_t at = 0; at < model.elementCount(); ++at)
    result.push_back(equal(left ? left->elements[at] : call.arguments[0],
                           right ? right->elements[at] : call.arguments[1]));
  return {newValue(model.size(), std::move(result))};
}

Values upper(const BuiltinCall& call) { return changedCase(call, u'a', u'z', 'A' - 'a'); }
Values lower(const BuiltinCall& call) { return changedCase(call, u'A', u'Z', 'a' - 'A'); }

Values num2str(const BuiltinCall& call) {
  call.require(1, 1);
  if (isText(call[0])) return {call.arguments[0]};
  std::string text;
  for (const double number : numbersOf(call.interpreter, call[0])) {
    const std::string next = (text.empty() ? "" : "  ") + shownNumber(number);
    call.interpreter.step(next.size());
    call.interpreter.checkCount(text.size() + next.size());
    text += next;
  }
  return {newText(widened(text))};
}

Values string(const BuiltinCall& call) {
  call.require(1, 1);
  return {asStrings(call.interpreter, call.arguments[0])};
}

Values characters(const BuiltinCall& call) {
  call.require(1, 1);
  return {isText(call[0]) ? newText(textOf(call.interpreter, call[0]))
                          : asCharacters(call.interpreter, call.arguments[0])};
}

Values doubles(const BuiltinCall& call) {
  call.require(1, 1);
  return {newValue(call[0].size(), numbersOf(call.interpreter, call[0]))};
}

Values logicals(const BuiltinCall& call) {
  call.require(1, 1);
  const std::vector<double> numbers = numbersOf(call.interpreter, call[0]);
  std::vector<bool> result;
  result.reserve(numbers.size());
  // NaN becomes true, as it is one in a condition.
  for (const double number : numbers) result.push_back(number != 0);
  return {newValue(call[0].size(), std::move(result))};
}

}  // namespace embedded::builtins
