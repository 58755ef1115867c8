#pragma once

// Names that a walk remembers.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory_resource>
#include <string_view>
#include <vector>

/// Calls `action` with all characters of a text, eight at a time; some may come twice.
template <class Action>
void forEachWord(std::string_view text, Action action) {
  const auto load = [](const char* at, auto word) {
    std::memcpy(&word, at, sizeof(word));  // of a size that is known, it is one instruction
    return std::uint64_t{word};
  };
  const char* at = text.data();
  std::size_t rest = text.size();
  if (rest >= 8) {
    for (; rest > 8; rest -= 8, at += 8) action(load(at, std::uint64_t()));
    action(load(at + rest - 8, std::uint64_t()));
  } else if (rest >= 4) {
    action(load(at, std::uint32_t()) << 32 | load(at + rest - 4, std::uint32_t()));
  } else {
    for (; rest > 0; --rest, ++at) action(load(at, std::uint8_t()));
  }
}

/// Numbers names in the order in which they come; their texts are copied, so that callers need not keep theirs. Each member
/// that a walk collects goes through it, which decides what a query costs: so it is probed in a row, with a hash of words,
/// in an arena that begins inside the object. A name costs no allocation of its own, and few names none at all.
class NameTable {
 public:
  NameTable() { slots_.resize(64); }
  NameTable(const NameTable&) = delete;
  NameTable& operator=(const NameTable&) = delete;

  /// How many names there are; the number of the next one.
  std::uint32_t size() const noexcept { return count_; }

  /// The number of a name, which is added when it has not come before.
  std::uint32_t numberOf(std::string_view name) {
    const std::uint32_t hash = hashOf(name);
    std::size_t at = hash & (slots_.size() - 1);  // their number is a power of two
    for (; slots_[at].text != nullptr; at = (at + 1) & (slots_.size() - 1)) {
      const Slot& slot = slots_[at];
      if (slot.hash == hash && name == std::string_view(slot.text, slot.size)) return slot.number;
    }
    slots_[at] = {kept(name), static_cast<std::uint32_t>(name.size()), hash, count_};
    // At least half of the slots stay free, so that runs stay short.
    if (++count_ * 2 > slots_.size()) grow();
    return count_ - 1;
  }
  std::uint32_t numberOf(std::u16string_view name) {
    return numberOf(
        std::string_view(reinterpret_cast<const char*>(name.data()), name.size() * sizeof(char16_t)));
  }

 private:
  /// Free without a text.
  struct Slot {
    const char* text = nullptr;
    std::uint32_t size = 0;
    std::uint32_t hash = 0;
    std::uint32_t number = 0;
  };

  static std::uint32_t hashOf(std::string_view name) noexcept {
    std::uint64_t hash = name.size();
    forEachWord(name, [&](std::uint64_t word) {
      hash = (hash ^ word) * 0x9E3779B97F4A7C15U;
      hash ^= hash >> 32;
    });
    return static_cast<std::uint32_t>(hash);
  }

  void grow() {
    std::pmr::vector<Slot> larger(slots_.size() * 4, &arena_);
    for (const Slot& slot : slots_) {
      if (slot.text == nullptr) continue;
      std::size_t at = slot.hash & (larger.size() - 1);
      while (larger[at].text != nullptr) at = (at + 1) & (larger.size() - 1);
      larger[at] = slot;
    }
    slots_.swap(larger);
  }

  const char* kept(std::string_view name) {
    // One more, for the text of an empty name is somewhere too.
    auto* text = static_cast<char*>(arena_.allocate(name.size() + 1, 1));
    name.copy(text, name.size());
    return text;
  }

  std::array<std::byte, 3072> few_;
  std::pmr::monotonic_buffer_resource arena_{few_.data(), few_.size()};
  std::pmr::vector<Slot> slots_{&arena_};
  std::uint32_t count_ = 0;
};
