#pragma once

// How much a snapshot may hold. docs/snapshot.md lists these limits.

#include <cstddef>
#include <cstdint>

namespace embedded::snapshot {

/// Values nest without end in a hostile text, and are copied and destroyed by recursion: how many objects and
/// lists may be open at once.
constexpr std::size_t deepestLevel = 200;

/// How many levels of superclasses a class may have, itself included: the library keeps a class with its superclasses as
/// a tree, which it makes, asks and destroys by recursion.
constexpr std::size_t deepestClass = 10000;

/// How many parts a dotted name may have: each but the last is a namespace, whose name repeats those before it.
constexpr std::size_t mostParts = 32;

/// How much memory a snapshot of that size may take. Ten thousand classes of twenty members with short names fit, and a
/// hundred thousand without members; what takes more is not written by accident.
constexpr std::size_t mostMemoryOf(std::uintmax_t textSize) {
  constexpr std::size_t always = std::size_t{160} << 20U;
  constexpr std::size_t perByte = 20;
  return always + perByte * textSize;
}

}  // namespace embedded::snapshot
