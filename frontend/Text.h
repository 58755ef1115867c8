#pragma once

// Text conversion for names that the class system has in narrow text, numbers as text, and how code writes either. It asks nothing of the host,
// so that it can be used where the host has just failed.

#include <algorithm>
#include <boost/locale/encoding_utf.hpp>
#include <cstddef>
#include <string>
#include <string_view>

#include "syntax/Characters.h"
#include "syntax/Keywords.h"

namespace frontend {

/// From UTF-8 to UTF-16 and back; what cannot be converted is left out.
inline std::u16string wide(std::string_view text) {
  return boost::locale::conv::utf_to_utf<char16_t>(text.data(), text.data() + text.size());
}

inline std::string narrow(std::u16string_view text) {
  return boost::locale::conv::utf_to_utf<char>(text.data(), text.data() + text.size());
}

/// What stands between quotes for the text.
inline std::u16string escaped(const std::u16string& text, char16_t quote) {
  std::u16string result;
  for (const char16_t unit : text) {
    result += unit;
    if (unit == quote) result += quote;
  }
  return result;
}

/// Can code write the name, at all and after a dot?
inline bool isMemberName(std::u16string_view name) {
  return !name.empty() && !syntax::isDigit(name[0]) && std::ranges::all_of(name, syntax::isNamePart);
}
inline bool isName(std::u16string_view name) {
  return isMemberName(name) && syntax::isNameStart(name[0]) &&
         syntax::keywordOf(name) == syntax::Keyword::None;
}

/// Names one after the other, with dots between them.
inline bool isDottedName(std::u16string_view name) {
  const std::size_t dot = name.find(u'.');
  if (dot == std::u16string_view::npos) return isName(name);
  return isName(name.substr(0, dot)) && isDottedName(name.substr(dot + 1));
}

inline std::u16string decimal(std::size_t number) { return wide(std::to_string(number)); }

}  // namespace frontend
