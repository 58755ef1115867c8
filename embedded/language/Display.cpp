#include "embedded/language/Display.h"

#include <boost/algorithm/string/join.hpp>
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

std::u16string sizeAndClass(const Value& value) {
  std::string text = value.sizeText() + " " + value.className();
  if (const auto* structures = value.as<Structures>(); structures != nullptr && !structures->fields.empty())
    text += " with " + boost::algorithm::join(structures->fields, ", ");
  return widened(text);
}

/// What is too big for a line, and what has no such text, is told by its size and class.
struct ShownByKind {
  Interpreter& interpreter;
  const Value& value;

  std::u16string operator()(const std::vector<double>& numbers) const {
    return array([&](std::size_t at) { return widened(shownNumber(numbers[at])); });
  }
  std::u16string operator()(const std::vector<bool>& logicals) const {
    return array([&](std::size_t at) -> std::u16string { return logicals[at] ? u"true" : u"false"; });
  }
  std::u16string operator()(const Strings& strings) const {
    return array([&](std::size_t at) {
      return strings.elements[at] ? quoted(*strings.elements[at], u'"') : u"missing";
    });
  }
  std::u16string operator()(const Cells& cells) const {
    if (!fits()) return sizeAndClass(value);
    return listed(u'{', u", ", u'}', [&](std::size_t at) {
      return cells.elements[at] == nullptr ? u"[]" : shownValue(interpreter, *cells.elements[at]);
    });
  }
  std::u16string operator()(const std::u16string& text) const {
    return isText(value) ? quoted(text, u'\'') : sizeAndClass(value);
  }
  std::u16string operator()(const FunctionHandle& handle) const { return u"@" + widened(handle.function); }
  std::u16string operator()(const Object& object) const {
    return object.member.empty() ? sizeAndClass(value) : widened(value.className() + "." + object.member);
  }
  std::u16string operator()(const Structures&) const { return sizeAndClass(value); }
  std::u16string operator()(const Objects&) const { return sizeAndClass(value); }
  std::u16string operator()(const ScalarKind auto&) const { return sizeAndClass(value); }

 private:
  bool fits() const {
    if (value.elementCount() > mostElements || value.size().size() > 2) return false;
    // Brackets would hide which of its dimensions is not empty.
    return value.elementCount() > 0 || value.size() == Value::Size{0, 0};
  }

  template <class Show>
  std::u16string array(Show show) const {
    if (!fits()) return sizeAndClass(value);
    return value.elementCount() == 1 ? show(0) : listed(u'[', u" ", u']', show);
  }

  template <class Show>
  std::u16string listed(char16_t open, const char16_t* separator, char16_t close, Show show) const {
    std::u16string text(1, open);
    for (std::size_t row = 0; row < value.rows(); ++row) {
      if (row > 0) text += u"; ";
      for (std::size_t column = 0; column < value.columns(); ++column) {
        if (column > 0) text += separator;
        text += show(row + column * value.rows());
        // Only then: checking costs steps, and short elements would pay them again and again.
        if (text.size() > interpreter.limits.elements) interpreter.checkSize({text.size()});
      }
    }
    return text + close;
  }
};

/// One conversion of a format: everything from the "%" to its letter.
std::string conversionAt(Interpreter& interpreter, const std::u16string& format, std::size_t& at) {
  std::string conversion = "%";
  for (++at; at < format.size(); ++at) {
    const char16_t unit = format[at];
    const bool isEnd = (unit >= u'a' && unit <= u'z') || unit == u'%';
    if (!isEnd && std::u16string_view(u"0123456789.+- #").find(unit) == std::u16string_view::npos) break;
    conversion += static_cast<char>(unit);
    // No conversion that makes sense is that long.
    if (conversion.size() > 12) break;
    if (!isEnd) continue;
    ++at;
    if (std::string_view("diuxgfesc%").find(conversion.back()) != std::string_view::npos) return conversion;
    break;
  }
  interpreter.fail("KORVAL:code:Format", "The format has no such conversion: " + conversion);
}

std::u16string escapeAt(const std::u16string& format, std::size_t& at) {
  const char16_t unit = at + 1 < format.size() ? format[at + 1] : u'\\';
  at += at + 1 < format.size() ? 2 : 1;
  // What is no escape stays as it is written.
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
  if (conversion.back() == 'c') return std::u16string(1, characterOf(argument.number));
  return widened(printed(conversion, argument.number));
}

}  // namespace

std::u16string shownValue(Interpreter& interpreter, const Value& value) {
  // Cells nest, and each level is a piece of the C++ stack.
  const CodeLevel level(interpreter);
  interpreter.step();
  return std::visit(ShownByKind{interpreter, value}, value.content());
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
