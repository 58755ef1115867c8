#pragma once

// Between UTF-8 and UTF-16, for the host's own use. Every text is carried; what is no text in it becomes U+FFFD.

#include <string>
#include <string_view>

namespace embedded {

constexpr char32_t replacement = 0xFFFD;

/// The code point at the front of `text`, which is not empty, and takes it off; a lone surrogate stands for
/// itself.
char32_t takeCodePoint(std::u16string_view& text) noexcept;

std::string narrowed(std::u16string_view text);
std::u16string widened(std::string_view text);

}  // namespace embedded
