#pragma once

// Text conversion. Interfaces are in UTF-16, the class system's names are narrow.
//
// There are two conversions in each direction, and they differ: the general one carries every text (narrow
// text in the host's encoding), the ASCII one only ASCII. What a conversion cannot carry (a lone surrogate, a
// byte that is no text, for the ASCII ones everything else) it substitutes; it never throws for its input's
// sake. Code unit U+0000 is text like any other. All work before `main` and without an active host; with one,
// they may throw on its behalf. Cost: linear.

#include <string>

#include "host/Export.h"

namespace fl::i18n {

/// Selects the ASCII conversion to narrow text.
struct codecvt_ustring_to_ascii {};
/// Selects the general conversion to narrow text.
struct codecvt_ustring_to_string {};
/// Selects the ASCII conversion to UTF-16.
struct codecvt_ascii_to_ustring {};

KORVAL_HOST_API std::string to_string(const std::u16string& text);
KORVAL_HOST_API std::string to_string(const std::u16string& text, const codecvt_ustring_to_string& converter);
KORVAL_HOST_API std::string to_string(const std::u16string& text, const codecvt_ustring_to_ascii& converter);

KORVAL_HOST_API std::u16string to_ustring(const std::string& text);
KORVAL_HOST_API std::u16string to_ustring(const std::string& text, const codecvt_ascii_to_ustring& converter);

/// `text` without the characters of `set` at both ends.
KORVAL_HOST_API std::u16string trim(const std::u16string& text, const std::u16string& set);

/// ASCII only, whatever the locale.
KORVAL_HOST_API bool is_ascii_letter(char16_t unit);
KORVAL_HOST_API bool is_ascii_digit(char16_t unit);

/// The first and the second half of a character that UTF-16 writes with two units. They ask nothing of the
/// host.
constexpr bool is_high_surrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool is_low_surrogate(char16_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }

}  // namespace fl::i18n
