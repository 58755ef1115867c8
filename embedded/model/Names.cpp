#include "embedded/model/Names.h"

#include <algorithm>
#include <mutex>
#include <unordered_set>

#include "syntax/Characters.h"

namespace embedded {

namespace {

struct Table {
  std::mutex mutex;
  std::unordered_set<std::string, TextHash, std::equal_to<>> names;  // whose elements never move
};

/// Names are asked for before main() and after it, so the table is never destroyed.
Table& table() {
  static Table& instance = *new Table;
  return instance;
}

/// More than in code, whose names are ASCII: a session may hold names that no code can write.
bool isNameStart(unsigned char byte) { return syntax::isLetter(byte) || byte == '_' || byte >= 0x80; }
bool isNamePart(unsigned char byte) { return isNameStart(byte) || syntax::isDigit(byte); }

bool isName(std::string_view part) {
  return !part.empty() && isNameStart(part.front()) && std::ranges::all_of(part, isNamePart);
}

}  // namespace

kcos::COSInternedName interned(std::string_view name) {
  if (name.empty()) return {};
  Table& names = table();
  const std::lock_guard lock(names.mutex);
  auto found = names.names.find(name);
  if (found == names.names.end()) found = names.names.emplace(name).first;
  return kcos::COSInternedName::ofInterned(*found);
}

kcos::COSInternedName alreadyInterned(std::string_view name) {
  Table& names = table();
  const std::lock_guard lock(names.mutex);
  const auto found = names.names.find(name);
  return found == names.names.end() ? kcos::COSInternedName() : kcos::COSInternedName::ofInterned(*found);
}

bool isDottedName(std::string_view name) noexcept {
  for (auto dot = name.find('.'); dot != std::string_view::npos; dot = name.find('.')) {
    if (!isName(name.substr(0, dot))) return false;
    name.remove_prefix(dot + 1);
  }
  return isName(name);
}

std::string importedName(const std::string& import, const std::string& name) {
  if (import.ends_with(".*")) return import.substr(0, import.size() - 1) + name;
  return simpleNameOf(import) == name ? import : std::string();
}

std::string identityOf(const std::string& component, const std::string& name) {
  return component.empty() ? name : component + ':' + name;
}

}  // namespace embedded
