#pragma once

#include <optional>
#include <span>

#include "syntax/Token.h"

namespace syntax {

constexpr bool isOpener(Symbol symbol) noexcept {
  return symbol == Symbol::OpenParen || symbol == Symbol::OpenBracket || symbol == Symbol::OpenBrace;
}

constexpr bool isCloser(Symbol symbol) noexcept {
  return symbol == Symbol::CloseParen || symbol == Symbol::CloseBracket || symbol == Symbol::CloseBrace;
}

constexpr Symbol closerOf(Symbol opener) noexcept {
  if (opener == Symbol::OpenParen) return Symbol::CloseParen;
  return opener == Symbol::OpenBracket ? Symbol::CloseBracket : Symbol::CloseBrace;
}

/// How one more token changes the number of brackets that are open.
constexpr int nestingOf(const Token& token) noexcept {
  return isOpener(token.symbol) ? 1 : isCloser(token.symbol) ? -1 : 0;
}

/// The innermost bracket that is open after these tokens. Any closer closes any opener, as code that is being typed
/// has them.
inline std::optional<std::size_t> innermostOpen(std::span<const Token> tokens) noexcept {
  std::size_t closed = 0;
  for (std::size_t at = tokens.size(); at-- > 0;) {
    if (isCloser(tokens[at].symbol)) ++closed;
    if (!isOpener(tokens[at].symbol)) continue;
    if (closed == 0) return at;
    --closed;
  }
  return {};
}

}  // namespace syntax
