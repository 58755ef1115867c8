#pragma once

// Between UTF-8 and UTF-16, for the host's own use. Every text is carried; what is no text in it becomes U+FFFD.

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded {

constexpr char32_t replacement = 0xFFFD;

/// Removes the first code point of `text`, which is not empty, and returns it; a lone surrogate stands for itself.
char32_t nextCodePoint(std::u16string_view& text) noexcept;

/// Copies the ASCII text that `text` begins with, and returns its length; there is room for the whole text.
std::size_t copyAscii(std::string_view text, char16_t* to) noexcept;
std::size_t copyAscii(std::u16string_view text, char* to) noexcept;

std::string narrowed(std::u16string_view text);
std::u16string widened(std::string_view text);

}  // namespace embedded
