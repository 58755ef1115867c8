#pragma once

#include <string_view>

namespace embedded {

/// What stands before the last dot; empty without one.
inline std::string_view namespaceOf(std::string_view dottedName) {
  const auto dot = dottedName.rfind('.');
  return dot == std::string_view::npos ? std::string_view() : dottedName.substr(0, dot);
}

/// What stands behind the last dot; the whole name without one.
inline std::string_view simpleNameOf(std::string_view dottedName) {
  return dottedName.substr(dottedName.rfind('.') + 1);
}

/// Names joined by dots, so that it can lie in a namespace? The names of files are not.
bool isDottedName(std::string_view name) noexcept;

}  // namespace embedded
