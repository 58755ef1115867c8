#include <algorithm>

#include "embedded/language/BuiltinTables.h"
#include "embedded/language/Convert.h"
#include "embedded/language/Display.h"
#include "embedded/language/Evaluator.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

Values rest(const BuiltinCall& call, std::size_t first) {
  return {call.arguments.begin() + static_cast<std::ptrdiff_t>(first), call.arguments.end()};
}

void print(const BuiltinCall& call, const std::u16string& text) { call.caller.write(text); }

Values disp(const BuiltinCall& call) {
  call.require(1, 1);
  print(call, displayed(call[0]) + u"\n");
  return {};
}

Values fprintf(const BuiltinCall& call) {
  call.require(1, 1000);
  print(call, formatted(textOf(call[0]), rest(call, 1)));
  return {};
}

Values sprintf(const BuiltinCall& call) {
  call.require(1, 1000);
  return {newText(formatted(textOf(call[0]), rest(call, 1)))};
}

bool isIdentifier(const std::string& text) {
  return text.find(':') != std::string::npos && text.find_first_of(" %\\") == std::string::npos;
}

/// error('group:name', 'format', ...), or error('format', ...).
Values error(const BuiltinCall& call) {
  call.require(1, 1000);
  const std::string first = nameOf(call[0]);
  if (call.arguments.size() > 1 && isIdentifier(first))
    failCode(first, narrowed(formatted(textOf(call[1]), rest(call, 2))));
  failCode("KORVAL:code:Raised", narrowed(formatted(textOf(call[0]), rest(call, 1))));
}

std::optional<std::u16string> textIn(const ValuePtr& value) {
  if (value == nullptr || !isText(*value)) return {};
  return textOf(*value);
}

/// Two texts, or a text and a cell, or two cells of one size.
Values strcmp(const BuiltinCall& call) {
  call.require(2, 2);
  const auto* left = call[0].as<Cells>();
  const auto* right = call[1].as<Cells>();
  const auto equal = [](const ValuePtr& one, const ValuePtr& other) {
    const auto text = textIn(one);
    return text && text == textIn(other);
  };
  if (left == nullptr && right == nullptr) return {newLogical(equal(call.arguments[0], call.arguments[1]))};
  const Value& model = left != nullptr ? call[0] : call[1];
  if (left != nullptr && right != nullptr && left->elements.size() != right->elements.size())
    failCode("KORVAL:code:SizeMismatch", "The cells have different sizes");
  std::vector<bool> result;
  for (std::size_t at = 0; at < model.elementCount(); ++at)
    result.push_back(equal(left ? left->elements[at] : call.arguments[0],
                           right ? right->elements[at] : call.arguments[1]));
  return {newValue(model.size(), std::move(result))};
}

template <char16_t first, char16_t last, int shift>
Values changedCase(const BuiltinCall& call) {
  call.require(1, 1);
  const auto changed = [](std::u16string text) {
    for (char16_t& unit : text)
      if (unit >= first && unit <= last) unit = static_cast<char16_t>(unit + shift);
    return text;
  };
  if (call[0].as<Strings>()) {
    Strings strings = *call[0].as<Strings>();
    for (auto& text : strings.elements)
      if (text) text = changed(*text);
    return {newValue(call[0].size(), std::move(strings))};
  }
  return {newText(changed(textOf(call[0])))};
}

Values num2str(const BuiltinCall& call) {
  call.require(1, 1);
  if (isText(call[0])) return {call.arguments[0]};
  std::string text;
  for (const double number : numbersOf(call[0])) {
    call.caller.session().interpreter.step();
    text += (text.empty() ? "" : "  ") + shownNumber(number);
  }
  call.caller.session().interpreter.checkSize({text.size()});
  return {newText(widened(text))};
}

Values string(const BuiltinCall& call) {
  call.require(1, 1);
  return {asStrings(call.arguments[0])};
}

Values characters(const BuiltinCall& call) {
  call.require(1, 1);
  return {isText(call[0]) ? newText(textOf(call[0])) : asCharacters(call.arguments[0])};
}

Values doubles(const BuiltinCall& call) {
  call.require(1, 1);
  return {newValue(call[0].size(), numbersOf(call[0]))};
}

Values logicals(const BuiltinCall& call) {
  call.require(1, 1);
  const std::vector<double> numbers = numbersOf(call[0]);
  std::vector<bool> result;
  for (const double number : numbers) result.push_back(number != 0);
  return {newValue(call[0].size(), std::move(result))};
}

constexpr NamedBuiltin table[] = {{"disp", disp},
                                  {"fprintf", fprintf},
                                  {"sprintf", sprintf},
                                  {"error", error},
                                  {"strcmp", strcmp},
                                  {"upper", changedCase<u'a', u'z', 'A' - 'a'>},
                                  {"lower", changedCase<u'A', u'Z', 'a' - 'A'>},
                                  {"num2str", num2str},
                                  {"string", string},
                                  {"char", characters},
                                  {"double", doubles},
                                  {"logical", logicals}};

}  // namespace

std::span<const NamedBuiltin> builtinsOnText() { return table; }

}  // namespace embedded
