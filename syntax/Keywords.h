#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

namespace syntax {

enum class Keyword : std::uint8_t {
  None,
  If,
  ElseIf,
  Else,
  While,
  For,
  Break,
  Continue,
  Return,
  Function,
  End,
  Import
};

inline constexpr std::array<std::pair<std::u16string_view, Keyword>, 11> keywords = {
    {{u"if", Keyword::If},
     {u"elseif", Keyword::ElseIf},
     {u"else", Keyword::Else},
     {u"while", Keyword::While},
     {u"for", Keyword::For},
     {u"break", Keyword::Break},
     {u"continue", Keyword::Continue},
     {u"return", Keyword::Return},
     {u"function", Keyword::Function},
     {u"end", Keyword::End},
     {u"import", Keyword::Import}}};

/// None when the word is a name.
constexpr Keyword keywordOf(std::u16string_view word) noexcept {
  for (const auto& [spelling, keyword] : keywords)
    if (spelling == word) return keyword;
  return Keyword::None;
}

}  // namespace syntax
