#include "tests/support/Allocations.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> made = 0;
std::atomic<std::size_t> now = 0;
std::atomic<std::size_t> before = 0;
std::atomic<std::size_t> most = 0;
constinit thread_local bool fails = false;

}  // namespace

// Of the whole program, the libraries included.

void* operator new(std::size_t size) {
  void* memory = fails ? nullptr : std::malloc(std::max<std::size_t>(size, 1));
  if (memory == nullptr) throw std::bad_alloc();
  ++made;
  const std::size_t taken = now += ::malloc_usable_size(memory);
  if (taken > most) most = taken;
  return memory;
}

// Sorting asks for its buffer this way, and gives it back by the usual operator.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) now -= ::malloc_usable_size(memory);
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

namespace allocations {

std::size_t count() { return made; }

Peak::Peak() { most = before = now.load(); }
std::size_t Peak::bytes() const { return most - before; }

Failing::Failing() { fails = true; }
Failing::~Failing() { fails = false; }

}  // namespace allocations
