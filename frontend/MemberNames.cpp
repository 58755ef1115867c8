#include "frontend/MemberNames.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "host/Text.h"

namespace frontend {

namespace {

/// Eight characters at a time: all names of a class go through here.
bool isAscii(std::string_view text) {
  std::uint64_t all = 0, word = 0;
  for (; text.size() >= sizeof word; text.remove_prefix(sizeof word)) {
    std::memcpy(&word, text.data(), sizeof word);
    all |= word;
  }
  for (const char unit : text) all |= static_cast<unsigned char>(unit);
  return (all & 0x8080808080808080U) == 0;
}

/// What the arena gives stays as long as the arena.
template <class Char>
Char* roomFor(std::size_t count, std::pmr::memory_resource& arena) {
  return static_cast<Char*>(arena.allocate((count + 1) * sizeof(Char), alignof(Char)));
}

/// Of ASCII. Eight characters at a time, a number that the compiler turns into one step; the last eight may overlap those
/// before.
void widen(std::string_view text, char16_t* to) {
  const auto widenEight = [&](std::size_t from) {
    // In variables of its own, which are no part of either text.
    std::array<char, 8> narrow;
    std::array<char16_t, 8> wide;
    std::memcpy(narrow.data(), text.data() + from, sizeof narrow);
    for (std::size_t at = 0; at < narrow.size(); ++at) wide[at] = static_cast<unsigned char>(narrow[at]);
    std::memcpy(to + from, wide.data(), sizeof wide);
  };
  if (text.size() < 8) {
    std::copy(text.begin(), text.end(), to);
    return;
  }
  for (std::size_t from = 0; from + 8 < text.size(); from += 8) widenEight(from);
  widenEight(text.size() - 8);
}

}  // namespace

std::uint32_t MemberNames::numberOf(const char* name) {
  const std::string_view text = name;
  if (!isAscii(text)) return numberOfConverted(text);
  const std::uint32_t number = numbers_.numberOf(text);
  if (number < wide_.size()) return number;
  auto* wide = roomFor<char16_t>(text.size(), arena_);
  widen(text, wide);
  wide_.emplace_back(wide, text.size());
  return number;
}

/// Names are the same when they are shown alike.
std::uint32_t MemberNames::numberOfConverted(std::string_view name) {
  const std::u16string converted = fl::i18n::to_ustring(std::string(name));
  const std::string shown = fl::i18n::to_string(converted);
  auto* kept = roomFor<char>(shown.size(), arena_);
  shown.copy(kept, shown.size());
  const std::uint32_t number = numbers_.numberOf({kept, shown.size()});
  if (number < wide_.size()) return number;
  auto* wide = roomFor<char16_t>(converted.size(), arena_);
  converted.copy(wide, converted.size());
  wide_.emplace_back(wide, converted.size());
  return number;
}

}  // namespace frontend
