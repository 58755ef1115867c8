#include "embedded/model/Unicode.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

#include "host/Text.h"

namespace embedded {

using fl::i18n::is_high_surrogate;
using fl::i18n::is_low_surrogate;

char32_t nextCodePoint(std::u16string_view& text) noexcept {
  const char16_t first = text.front();
  text.remove_prefix(1);
  if (!is_high_surrogate(first) || text.empty() || !is_low_surrogate(text.front())) return first;
  const char16_t second = text.front();
  text.remove_prefix(1);
  return 0x10000 + ((char32_t{first} - 0xD800) << 10) + (second - 0xDC00);
}

std::string narrowed(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const char32_t point = nextCodePoint(text);
    const auto unit = static_cast<char16_t>(point);
    // UTF-8 cannot carry a lone one.
    const bool isSurrogate = unit == point && (is_high_surrogate(unit) || is_low_surrogate(unit));
    utf8::append(isSurrogate ? replacement : point, std::back_inserter(result));
  }
  return result;
}

std::u16string widened(std::string_view text) {
  // Nearly every name.
  if (std::ranges::all_of(text, [](unsigned char unit) { return unit < 0x80; })) {
    return std::u16string(text.begin(), text.end());
  }
  std::string valid;
  valid.reserve(text.size());
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid), replacement);
  return utf8::utf8to16(valid);
}

}  // namespace embedded
