#pragma once

// Names as numbers, so that what is said of a name is looked up in a list.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

namespace frontend {

/// Numbers for names, from 0 on, equal names the same one. All that a key offers goes through it: so it is a table that is
/// probed in a row, with a hash of words, and allocates nothing per name.
template <class Char>
class NameNumbers {
 public:
  using Name = std::basic_string_view<Char>;

  /// With room for that many names.
  explicit NameNumbers(std::size_t expected = 32) {
    std::size_t count = 64;
    while (count < 2 * expected) count *= 2;
    slots_.resize(count);
    names_.reserve(expected);
  }

  std::size_t size() const noexcept { return names_.size(); }

  /// A new name gets the number size(), and has to stay where it is.
  std::uint32_t numberOf(Name name) {
    const std::uint32_t hash = hashOf(name);
    std::size_t at = hash & (slots_.size() - 1);  // their number is a power of two
    for (; slots_[at].number != none; at = (at + 1) & (slots_.size() - 1))
      if (slots_[at].hash == hash && names_[slots_[at].number] == name) return slots_[at].number;
    const auto number = static_cast<std::uint32_t>(names_.size());
    names_.push_back(name);
    slots_[at] = {hash, number};
    // At least half of the slots stay free, so that runs stay short.
    if (2 * names_.size() > slots_.size()) grow();
    return number;
  }

 private:
  static constexpr std::uint32_t none = 0xFFFFFFFF;
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = none;
  };

  static std::uint32_t hashOf(Name name) noexcept {
    const char* at = reinterpret_cast<const char*>(name.data());
    std::size_t rest = name.size() * sizeof(Char);
    std::uint64_t hash = rest;
    const auto add = [&hash](std::uint64_t word) {
      hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
      hash ^= hash >> 32U;
    };
    std::uint64_t word = 0;
    if (rest >= sizeof word) {
      for (; rest > sizeof word; rest -= sizeof word, at += sizeof word) {
        std::memcpy(&word, at, sizeof word);
        add(word);
      }
      // The last word may overlap the one before: no rest is left then.
      std::memcpy(&word, at + rest - sizeof word, sizeof word);
    } else {
      for (; rest > 0; --rest, ++at) word = word << 8U | static_cast<unsigned char>(*at);
    }
    add(word);
    return static_cast<std::uint32_t>(hash);
  }

  void grow() {
    std::vector<Slot> larger(4 * slots_.size());
    for (const Slot& slot : slots_) {
      if (slot.number == none) continue;
      std::size_t at = slot.hash & (larger.size() - 1);
      while (larger[at].number != none) at = (at + 1) & (larger.size() - 1);
      larger[at] = slot;
    }
    slots_.swap(larger);
  }

  std::vector<Slot> slots_;
  std::vector<Name> names_;
};

/// The names of members, from those of the class system, which stay for the request.
class MemberNames {
 public:
  std::size_t size() const noexcept { return wide_.size(); }
  /// In UTF-16, as long as this.
  std::u16string_view operator[](std::uint32_t number) const { return wide_[number]; }
  std::uint32_t numberOf(const char* name);

 private:
  std::uint32_t numberOfConverted(std::string_view name);

  std::pmr::monotonic_buffer_resource arena_;
  NameNumbers<char> numbers_;
  std::vector<std::u16string_view> wide_;
};

}  // namespace frontend
