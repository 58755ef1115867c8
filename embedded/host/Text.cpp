#include "host/Text.h"

#include "embedded/host/Gate.h"
#include "embedded/model/Unicode.h"
#include "syntax/Characters.h"

namespace fl::i18n {

using embedded::asked;
using embedded::Operation;

std::string to_string(const std::u16string& text) {
  return asked<Operation::toString>(text).answer([&text] { return embedded::narrowed(text); });
}

std::string to_string(const std::u16string& text, const codecvt_ustring_to_string&) {
  return asked<Operation::toStringByConverter>(text).answer([&text] { return embedded::narrowed(text); });
}

/// One "?" for each code point beyond ASCII.
std::string to_string(const std::u16string& text, const codecvt_ustring_to_ascii&) {
  return asked<Operation::toAscii>(text).answer([&text] {
    std::string result(text.size(), '\0');
    result.resize(embedded::copyAscii(text, result.data()));
    for (std::u16string_view rest = std::u16string_view(text).substr(result.size()); !rest.empty();) {
      const char32_t point = embedded::nextCodePoint(rest);
      result += point < 0x80 ? static_cast<char>(point) : '?';
    }
    return result;
  });
}

std::u16string to_ustring(const std::string& text) {
  return asked<Operation::toUstring>(text).answer([&text] { return embedded::widened(text); });
}

/// One U+FFFD for each byte beyond ASCII.
std::u16string to_ustring(const std::string& text, const codecvt_ascii_to_ustring&) {
  return asked<Operation::asciiToUstring>(text).answer([&text] {
    std::u16string result(text.size(), u'\0');
    for (std::size_t at = embedded::copyAscii(text, result.data()); at < text.size(); ++at) {
      const auto byte = static_cast<unsigned char>(text[at]);
      result[at] = byte < 0x80 ? char16_t{byte} : static_cast<char16_t>(embedded::replacement);
    }
    return result;
  });
}

std::u16string trim(const std::u16string& text, const std::u16string& set) {
  return asked<Operation::trim>(text, set).answer([&text, &set] {
    const auto first = text.find_first_not_of(set);
    return first == std::u16string::npos ? std::u16string()
                                         : text.substr(first, text.find_last_not_of(set) + 1 - first);
  });
}

bool is_ascii_letter(char16_t unit) {
  return asked<Operation::isAsciiLetter>(unit).answer([unit] { return syntax::isLetter(unit); });
}

bool is_ascii_digit(char16_t unit) {
  return asked<Operation::isAsciiDigit>(unit).answer([unit] { return syntax::isDigit(unit); });
}

}  // namespace fl::i18n
