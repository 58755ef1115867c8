#include "embedded/model/Unicode.h"

#include <utf8.h>

#include <cstdint>
#include <cstring>
#include <iterator>
#include <type_traits>

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

namespace {

// Nearly every name is ASCII, and short: a block at a time, in loops of a fixed length, which compilers make into a few
// instructions.
constexpr std::size_t blockSize = 8;

/// Copies a block, and returns whether it is ASCII.
template <class From, class To>
bool copyBlock(const From* from, To* to) noexcept {
  // Of this function alone, so that no store can change what is still to be read.
  From units[blockSize];
  To copies[blockSize];
  std::uint64_t words[sizeof(From)];
  static_assert(sizeof(words) == sizeof(units));
  std::memcpy(units, from, sizeof(units));
  std::memcpy(words, from, sizeof(words));
  for (std::size_t unit = 0; unit < blockSize; ++unit) copies[unit] = static_cast<To>(units[unit]);
  std::memcpy(to, copies, sizeof(copies));
  std::uint64_t all = 0;
  for (const std::uint64_t word : words) all |= word;
  // Whatever lies above the low seven bits of a unit.
  return (all & (sizeof(From) == 1 ? 0x8080808080808080U : 0xFF80FF80FF80FF80U)) == 0;
}

template <class From, class To>
std::size_t copyAsciiBlocks(std::basic_string_view<From> text, To* to) noexcept {
  const From* from = text.data();
  std::size_t at = 0;
  while (at + blockSize <= text.size() && copyBlock(from + at, to + at)) at += blockSize;
  for (; at < text.size() && std::make_unsigned_t<From>(from[at]) < 0x80; ++at)
    to[at] = static_cast<To>(from[at]);
  return at;
}

}  // namespace

std::size_t copyAscii(std::string_view text, char16_t* to) noexcept { return copyAsciiBlocks(text, to); }
std::size_t copyAscii(std::u16string_view text, char* to) noexcept { return copyAsciiBlocks(text, to); }

std::string narrowed(std::u16string_view text) {
  std::string result(text.size(), '\0');
  const std::size_t ascii = copyAscii(text, result.data());
  result.resize(ascii);
  text.remove_prefix(ascii);
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
  std::u16string result(text.size(), u'\0');
  if (copyAscii(text, result.data()) < text.size()) {
    std::string valid;
    valid.reserve(text.size());
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid), replacement);
    result = utf8::utf8to16(valid);
  }
  return result;
}

}  // namespace embedded
