#pragma once

// Names: the process's table of interned ones, and what their dots say.

#include <functional>
#include <string>
#include <string_view>

#include "host/Names.h"

namespace embedded {

/// Lets tables of texts be asked with views of texts.
struct TextHash : std::hash<std::string_view> {
  using is_transparent = void;
};

/// The handle of a name; the null name for an empty one.
kcos::COSInternedName interned(std::string_view name);

/// The same, but the null name too for a text that nobody has interned: asking adds nothing to the table.
kcos::COSInternedName alreadyInterned(std::string_view name);

/// What stands before the last dot; empty without one.
inline std::string_view namespaceOf(std::string_view dottedName) {
  const auto dot = dottedName.rfind('.');
  return dot == std::string_view::npos ? std::string_view() : dottedName.substr(0, dot);
}

/// What stands after the last dot; the whole name without one.
inline std::string_view simpleNameOf(std::string_view dottedName) {
  return dottedName.substr(dottedName.rfind('.') + 1);
}

/// Names joined by dots, so that it can lie in a namespace? The names of files are not.
bool isDottedName(std::string_view name) noexcept;

/// The name that an import ("lab.Pump" or "lab.*") gives to `name`; empty when it imports something else.
std::string importedName(const std::string& import, const std::string& name);

/// The identity of a class or a function: "component:name", or the name alone without a component.
std::string identityOf(const std::string& component, const std::string& name);

}  // namespace embedded
