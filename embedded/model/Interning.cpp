#include "embedded/model/Interning.h"

#include <functional>
#include <mutex>
#include <unordered_set>

#include "embedded/host/Gate.h"

namespace embedded {

namespace {

/// Names are asked for before main() and after it, so nothing here is ever destroyed, and the empty text is
/// there before the first initialiser runs: as a constant where the standard library's strings can be one for
/// the compiler, and by the priority where they cannot.
union EmptyText {
  std::string text;
  constexpr EmptyText() : text() {}
  ~EmptyText() {}
};
__attribute__((init_priority(101))) EmptyText emptyText;

struct TextHash : std::hash<std::string_view> {
  using is_transparent = void;
};

struct Table {
  std::mutex mutex;
  std::unordered_set<std::string, TextHash, std::equal_to<>> names;  // whose elements never move
};

Table& table() {
  static Table& instance = *new Table;
  return instance;
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

}  // namespace embedded

namespace kcos::internal {

constinit const std::string& nullValue = embedded::emptyText.text;

COSInternedName makeInterned(std::string name) {
  embedded::enter<embedded::Operation::makeInterned>(name);
  return embedded::interned(name);
}

}  // namespace kcos::internal
