#include "embedded/language/Display.h"

#include <algorithm>
#include <boost/algorithm/string/join.hpp>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>

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
    interpreter.step(text.size());
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
        const std::u16string element = show(row + column * value.rows());
        interpreter.step(element.size());
        interpreter.checkCount(text.size() + element.size());
        text += element;
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

/// Width and precision of a conversion; refused when they are longer than any text may be.
struct Layout {
  std::size_t width = 0;
  std::optional<std::size_t> precision = {};
  bool toTheLeft = false;
};

Layout layoutOf(Interpreter& interpreter, const std::string& conversion) {
  Layout layout;
  const std::size_t digits = conversion.find_first_not_of("+- #0", 1);
  layout.toTheLeft = conversion.substr(0, digits).find('-') != std::string::npos;
  const char* at = conversion.c_str() + digits;
  const char* end = conversion.c_str() + conversion.size();
  // A conversion is so short that neither of them overflows.
  at = std::from_chars(at, end, layout.width).ptr;
  if (*at == '.') std::from_chars(at + 1, end, layout.precision.emplace(0));
  interpreter.checkSize({std::max(layout.width, layout.precision.value_or(0))});
  return layout;
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
  const auto print = [&](char* text, std::size_t size) {
    return wantsWhole && isWhole ? std::snprintf(text, size, format.c_str(), static_cast<long long>(number))
                                 : std::snprintf(text, size, format.c_str(), number);
  };
  // Once for the length: a width and a precision make it as long as they like.
  std::string text(static_cast<std::size_t>(std::max(print(nullptr, 0), 0)), '\0');
  print(text.data(), text.size() + 1);
  return text;
}

/// The arguments of a format one after another: the numbers of each, or its text as a whole.
class Arguments {
 public:
  Arguments(Interpreter& interpreter, const Values& values) : interpreter_(interpreter), values_(values) {
    findNext();
  }

  bool empty() const { return total_ == 0; }
  bool atEnd() const { return value_ == values_.size(); }

  /// What the conversion makes of the current argument, after which the next one is current.
  std::u16string put(const std::string& conversion) {
    const Layout layout = layoutOf(interpreter_, conversion);
    const bool isText = embedded::isText(*values_[value_]);
    const double number = isText ? 0 : numbers_[element_];
    const bool asText = isText || conversion.back() == 's' || conversion.back() == 'c';
    std::u16string text = isText                     ? textOf(interpreter_, *values_[value_])
                          : conversion.back() == 's' ? widened(shownNumber(number))
                          : conversion.back() == 'c' ? std::u16string(1, characterOf(number))
                                                     : widened(printed(conversion, number));
    ++element_;
    findNext();
    if (!asText) return text;
    if (layout.precision && conversion.back() == 's' && text.size() > *layout.precision)
      text.resize(*layout.precision);
    if (text.size() < layout.width)
      text.insert(layout.toTheLeft ? text.size() : 0, layout.width - text.size(), u' ');
    return text;
  }

 private:
  /// Moves on to a value that has an argument left. The numbers are those of one value at a time: the same one may stand
  /// among the values any number of times.
  void findNext() {
    for (; value_ < values_.size(); ++value_, element_ = 0) {
      interpreter_.step();
      if (element_ == 0) {
        const bool isText = embedded::isText(*values_[value_]);
        numbers_ = isText ? std::vector<double>() : numbersOf(interpreter_, *values_[value_]);
        count_ = isText ? 1 : numbers_.size();
        total_ += count_;
      }
      if (element_ < count_) return;
    }
  }

  Interpreter& interpreter_;
  const Values& values_;
  std::size_t value_ = 0;
  std::size_t element_ = 0;
  std::size_t count_ = 0;
  std::size_t total_ = 0;
  std::vector<double> numbers_;
};

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

std::u16string formatted(Interpreter& interpreter, const std::u16string& format, const Values& values) {
  Arguments arguments(interpreter, values);
  std::u16string result;
  const auto append = [&](const std::u16string& piece) {
    interpreter.step(piece.size());
    interpreter.checkCount(result.size() + piece.size());
    result += piece;
  };
  bool more = true;
  while (more) {
    // The format is used again for what is left, unless a round has used up nothing.
    more = false;
    for (std::size_t at = 0; at < format.size();) {
      interpreter.step();
      if (format[at] == u'\\') {
        append(escapeAt(format, at));
      } else if (format[at] != u'%') {
        append(std::u16string(1, format[at++]));
      } else if (const std::string conversion = conversionAt(interpreter, format, at);
                 conversion.back() == '%') {
        append(u"%");
      } else if (!arguments.atEnd()) {
        append(arguments.put(conversion));
        more = true;
        // Too few arguments end the text at the first conversion without one; with none at all, conversions are
        // empty.
      } else if (!arguments.empty()) {
        return result;
      }
    }
    more = more && !arguments.atEnd();
  }
  return result;
}

}  // namespace embedded
