#pragma once

#include <cstddef>
#include <fstream>
#include <string>

// Under the address sanitizer freed memory stays resident, and leaks are found otherwise.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool memoryIsComparable = false;
#elif defined(__has_feature)
constexpr bool memoryIsComparable = !__has_feature(address_sanitizer);
#else
constexpr bool memoryIsComparable = true;
#endif

/// Of this process, in bytes: "VmRSS" now, "VmHWM" at most.
inline std::size_t residentBytes(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (word == key + ":" && status >> word) return std::stoull(word) * 1024;
  return 0;
}
