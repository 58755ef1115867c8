#include "embedded/language/Display.h"

#include <cmath>
#include <cstdio>

#include "embedded/language/Convert.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

// A value is shown in a line; a longer one is told by its size and class.
constexpr std::size_t mostElements = 100;

std::u16string quoted(const std::u16string& text, char16_t quote) {
  std::u16string result(1, quote);
  for (const char16_t unit : text) result.append(unit == quote ? 2 : 1, unit);
  return result + quote;
}

struct ElementText {
  Interpreter& interpreter;
  std::size_t at;

  std::u16string operator()(const std::vector<double>& numbers) const {
    return widened(shownNumber(numbers[at]));
  }
  std::u16string operator()(const std::vector<bool>& logicals) const {
    return logicals[at] ? u"true" : u"false";
  }
  std::u16string operator()(const Strings& strings) const {
    return strings.elements[at] ? quoted(*strings.elements[at], u'"') : u"missing";
  }
  std::u16string operator()(const Cells& cells) const {
    return cells.elements[at] == nullptr ? u"[]" : shownValue(interpreter, *cells.elements[at]);
  }
  template <class Other>
  std::u16string operator()(const Other&) const {
    return {};
  }
};

std::u16string sizeAndClass(const Value& value) {
  std::string text;
  for (const std::size_t extent : value.size()) text += (text.empty() ? "" : "x") + std::to_string(extent);
  text += " " + value.className();
  if (const auto* structures = value.as<Structures>()) {
    const char* separator = " with ";
    for (const std::string& field : structures->fields) text += std::exchange(separator, ", ") + field;
  }
  return widened(text);
}

std::u16string listed(Interpreter& interpreter, const Value& value) {
  const bool isCell = value.as<Cells>() != nullptr;
  std::u16string text = isCell ? u"{" : u"[";
  for (std::size_t row = 0; row < value.rows(); ++row) {
    if (row > 0) text += u"; ";
    for (std::size_t column = 0; column < value.columns(); ++column) {
      if (column > 0) text += isCell ? u", " : u" ";
      text += std::visit(ElementText{interpreter, row + column * value.rows()}, value.content());
      // Only then: checking costs steps, and short elements would pay them again and again.
      if (text.size() > interpreter.limits.elements) interpreter.checkSize({text.size()});
    }
  }
  return text + (isCell ? u"}" : u"]");
}

/// One conversion of a format: everything from the "%" to its letter.
std::string conversionAt(Interpreter& interpreter, const std::u16string& format, std::size_t& at) {
  std::string conversion = "%";
  for (++at; at < format.size(); ++at) {
    const char16_t unit = format[at];
    const bool isLetter = (unit >= u'a' && unit <= u'z') || unit == u'%';
    if (!isLetter && std::u16string_view(u"0123456789.+- #").find(unit) == std::u16string_view::npos) break;
    conversion += static_cast<char>(unit);
    // No conversion that makes sense is that long.
    if (conversion.size() > 12) break;
    if (!isLetter) continue;
    ++at;
    if (std::string_view("diuxgfesc%").find(conversion.back()) != std::string_view::npos) return conversion;
    break;
  }
  interpreter.fail("KORVAL:code:Format", "The format has no such conversion: " + conversion);
}

std::u16string escapeAt(const std::u16string& format, std::size_t& at) {
  const char16_t unit = at + 1 < format.size() ? format[at + 1] : u'\\';
  at += at + 1 < format.size() ? 2 : 1;
  if (unit == u'n') return u"\n";
  if (unit == u't') return u"\t";
  return unit == u'\\' ? u"\\" : std::u16string{u'\\', unit};
}

std::string printed(const std::string& conversion, double number) {
  const bool wantsWhole = std::string_view("diux").find(conversion.back()) != std::string_view::npos;
  std::string format = conversion.substr(0, conversion.size() - 1);
  // Beyond, the number may not be a long long, and converting it would be undefined.
  const bool isWhole = number == std::floor(number) && std::abs(number) < 1e18;
  if (wantsWhole && isWhole)
    format += std::string("ll") + conversion.back();
  else
    format += wantsWhole ? 'g' : conversion.back();
  // A longer result is cut: the width in a format may be any number.
  char text[2048];
  const int length = wantsWhole && isWhole
                         ? std::snprintf(text, sizeof text, format.c_str(), static_cast<long long>(number))
                         : std::snprintf(text, sizeof text, format.c_str(), number);
  return {text, std::min(static_cast<std::size_t>(std::max(length, 0)), sizeof text - 1)};
}

/// What one conversion takes: a number, or a whole text.
struct Argument {
  std::u16string text;
  double number = 0;
  bool isText = false;
};

std::vector<Argument> flattened(Interpreter& interpreter, const Values& arguments) {
  std::vector<Argument> result;
  for (const ValuePtr& value : arguments) {
    if (isText(*value))
      result.push_back({textOf(interpreter, *value), 0, true});
    else
      for (const double number : numbersOf(interpreter, *value)) {
        interpreter.pollAt(result.size());
        result.push_back({widened(shownNumber(number)), number});
      }
  }
  return result;
}

std::u16string put(const std::string& conversion, const Argument& argument) {
  if (argument.isText || conversion.back() == 's') return argument.text;
  if (conversion.back() == 'c') return std::u16string(1, static_cast<char16_t>(argument.number));
  return widened(printed(conversion, argument.number));
}

}  // namespace

std::u16string shownValue(Interpreter& interpreter, const Value& value) {
  // Cells nest, and each level is a piece of the C++ stack.
  const CodeLevel level(interpreter);
  interpreter.step();
  if (const auto* text = value.as<std::u16string>(); text != nullptr && isText(value))
    return quoted(*text, u'\'');
  if (const auto* handle = value.as<FunctionHandle>()) return u"@" + widened(handle->function);
  if (const auto* object = value.as<Object>(); object != nullptr && !object->member.empty())
    return widened(value.className() + "." + object->member);
  const bool hasElements = value.as<std::vector<double>>() || value.as<std::vector<bool>>() ||
                           value.as<Strings>() || value.as<Cells>();
  if (!hasElements || value.elementCount() > mostElements || value.size().size() > 2)
    return sizeAndClass(value);
  // Brackets would hide which of its dimensions is not empty.
  if (value.elementCount() == 0 && value.size() != Value::Size{0, 0}) return sizeAndClass(value);
  if (value.elementCount() == 1 && !value.as<Cells>())
    return std::visit(ElementText{interpreter, 0}, value.content());
  return listed(interpreter, value);
}

std::u16string displayed(Interpreter& interpreter, const Value& value) {
  return isText(value) ? textOf(interpreter, value) : shownValue(interpreter, value);
}

std::u16string formatted(Interpreter& interpreter, const std::u16string& format, const Values& arguments) {
  const std::vector<Argument> all = flattened(interpreter, arguments);
  std::u16string result;
  std::size_t next = 0;
  bool more = true;
  while (more) {
    // The format is used again for what is left, unless a round has used up nothing.
    const std::size_t before = next;
    for (std::size_t at = 0; at < format.size();) {
      interpreter.step();
      if (format[at] == u'\\') {
        result += escapeAt(format, at);
      } else if (format[at] != u'%') {
        result += format[at++];
      } else if (const std::string conversion = conversionAt(interpreter, format, at);
                 conversion.back() == '%') {
        result += u'%';
      } else if (next < all.size()) {
        result += put(conversion, all[next++]);
        // Too few arguments end the text at the first conversion without one; with none at all, conversions are
        // empty.
      } else if (!all.empty()) {
        return result;
      }
    }
    interpreter.checkSize({result.size()});
    more = next > before && next < all.size();
  }
  return result;
}

}  // namespace embedded
