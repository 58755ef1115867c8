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

/// A growing set of names with texts of its own, so that callers need not keep theirs. One name of each method that a walk
/// meets goes through it, which decides what a list of methods costs: so it is a table that is probed in a row, with a hash
/// of words, in an arena that begins inside the object. A name costs no allocation of its own, and few names none at all.
class NameSet {
 public:
  NameSet() { slots_.resize(64); }
  NameSet(const NameSet&) = delete;
  NameSet& operator=(const NameSet&) = delete;

  /// Is the name new?
  bool insert(std::string_view name) {
    const std::uint32_t hash = hashOf(name);
    std::size_t at = hash & (slots_.size() - 1);  // their number is a power of two
    for (; slots_[at].text != nullptr; at = (at + 1) & (slots_.size() - 1))
      if (slots_[at].hash == hash && name == std::string_view(slots_[at].text, slots_[at].size)) return false;
    slots_[at] = {kept(name), static_cast<std::uint32_t>(name.size()), hash};
    // At least half of the slots stay free, so that runs stay short.
    if (++count_ * 2 > slots_.size()) grow();
    return true;
  }

 private:
  /// Free without a text.
  struct Slot {
    const char* text = nullptr;
    std::uint32_t size = 0;
    std::uint32_t hash = 0;
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

  std::array<std::byte, 2048> few_;
  std::pmr::monotonic_buffer_resource arena_{few_.data(), few_.size()};
  std::pmr::vector<Slot> slots_{&arena_};
  std::size_t count_ = 0;
};
