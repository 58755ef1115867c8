#include "syntax/Token.h"

#include <charconv>
#include <cstdlib>

namespace syntax {

std::string nameOf(const Token& token, std::u16string_view text) {
  const std::u16string_view name = token.in(text);
  return {name.begin(), name.end()};
}

double numberOf(const Token& token, std::u16string_view text) {
  const std::string digits = nameOf(token, text);
  double number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  // from_chars leaves the number alone where it is too large or too small; strtod says infinity or zero.
  if (read.ec == std::errc::result_out_of_range) number = std::strtod(digits.c_str(), nullptr);
  return number;
}

std::u16string contentOf(const Token& token, std::u16string_view text) {
  const std::u16string_view quoted = token.in(text);
  std::u16string content;
  for (std::size_t at = 1; at + 1 < quoted.size(); ++at) {
    content += quoted[at];
    if (quoted[at] == quoted.front()) ++at;
  }
  return content;
}

std::string problemOf(const Token& token, std::u16string_view text) {
  const char16_t first = text[token.begin];
  if (token.kind == TokenKind::OpenText)
    return std::string("The text lacks its closing ") + static_cast<char>(first);
  constexpr char digits[] = "0123456789ABCDEF";
  std::string code;
  for (int shift = 12; shift >= 0; shift -= 4) code += digits[(first >> shift) & 15];
  return "The character U+" + code + " cannot stand here";
}

}  // namespace syntax
