#pragma once

#include <cstddef>

namespace allocations {

/// How many there have been so far, in the whole process.
std::size_t count();

/// The most bytes that have been allocated at a time since this was made, beyond those before.
class Peak {
 public:
  Peak();
  std::size_t bytes() const;
};

/// Every allocation fails for as long as this lives.
class Failing {
 public:
  Failing();
  ~Failing();
  Failing(const Failing&) = delete;
  Failing& operator=(const Failing&) = delete;
};

}  // namespace allocations
