#include "embedded/model/Unicode.h"

#include <utf8.h>

#include <algorithm>
#include <iterator>

namespace embedded {

namespace {

bool isLeading(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isTrailing(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }
bool isSurrogate(char32_t point) { return point >= 0xD800 && point < 0xE000; }

}  // namespace

char32_t takeCodePoint(std::u16string_view& text) noexcept {
  const char16_t first = text.front();
  text.remove_prefix(1);
  if (!isLeading(first) || text.empty() || !isTrailing(text.front())) return first;
  const char16_t second = text.front();
  text.remove_prefix(1);
  return 0x10000 + ((char32_t{first} - 0xD800) << 10) + (second - 0xDC00);
}

std::string narrowed(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const char32_t point = takeCodePoint(text);
    // A lone surrogate, which UTF-8 cannot carry.
    utf8::append(isSurrogate(point) ? replacement : point, std::back_inserter(result));
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
