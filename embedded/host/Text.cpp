#include "host/Text.h"

#include "embedded/host/Gate.h"
#include "embedded/model/Unicode.h"
#include "syntax/Characters.h"

namespace fl::i18n {

using embedded::enter;
using embedded::Operation;

std::string to_string(const std::u16string& text) {
  enter<Operation::toString>(text);
  return embedded::narrowed(text);
}

std::string to_string(const std::u16string& text, const codecvt_ustring_to_string&) {
  enter<Operation::toStringByConverter>(text);
  return embedded::narrowed(text);
}

/// One "?" for each code point beyond ASCII.
std::string to_string(const std::u16string& text, const codecvt_ustring_to_ascii&) {
  enter<Operation::toAscii>(text);
  std::string result;
  for (std::u16string_view rest = text; !rest.empty();) {
    const char32_t point = embedded::nextCodePoint(rest);
    result += point < 0x80 ? static_cast<char>(point) : '?';
  }
  return result;
}

std::u16string to_ustring(const std::string& text) {
  enter<Operation::toUstring>(text);
  return embedded::widened(text);
}

/// One U+FFFD for each byte beyond ASCII.
std::u16string to_ustring(const std::string& text, const codecvt_ascii_to_ustring&) {
  enter<Operation::asciiToUstring>(text);
  std::u16string result;
  result.reserve(text.size());
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    result += byte < 0x80 ? char16_t{byte} : static_cast<char16_t>(embedded::replacement);
  }
  return result;
}

std::u16string trim(const std::u16string& text, const std::u16string& set) {
  enter<Operation::trim>(text, set);
  const auto first = text.find_first_not_of(set);
  return first == std::u16string::npos ? std::u16string()
                                       : text.substr(first, text.find_last_not_of(set) + 1 - first);
}

bool is_ascii_letter(char16_t unit) {
  enter<Operation::isAsciiLetter>(unit);
  return syntax::isLetter(unit);
}

bool is_ascii_digit(char16_t unit) {
  enter<Operation::isAsciiDigit>(unit);
  return syntax::isDigit(unit);
}

}  // namespace fl::i18n
