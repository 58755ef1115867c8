#pragma once

// What characters are in Korval code. Names are plain ASCII, so none of this asks for a locale.

namespace syntax {

constexpr bool isLetter(char16_t unit) noexcept {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

constexpr bool isDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

/// A name begins with a letter. After a dot any part of a name may begin one: "p._flow".
constexpr bool isNameStart(char16_t unit) noexcept { return isLetter(unit); }

constexpr bool isNamePart(char16_t unit) noexcept { return isLetter(unit) || isDigit(unit) || unit == u'_'; }

/// A carriage return is a blank, because only "\n" ends a line: "\r\n" then ends one as well.
constexpr bool isBlank(char16_t unit) noexcept { return unit == u' ' || unit == u'\t' || unit == u'\r'; }

}  // namespace syntax
