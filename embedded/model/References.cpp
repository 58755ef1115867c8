#include "embedded/model/References.h"

#include <atomic>

#include "embedded/host/Gate.h"
#include "embedded/model/Value.h"

namespace embedded {

namespace {

constinit std::atomic<std::int64_t> values = 0;
constinit std::atomic<std::uint64_t> added = 0;
constinit std::atomic<std::uint64_t> dropped = 0;

}  // namespace

void countNewValue() noexcept { values.fetch_add(1, std::memory_order_relaxed); }
void countDestroyedValue() noexcept { values.fetch_sub(1, std::memory_order_relaxed); }
void countAddedReference() noexcept { added.fetch_add(1, std::memory_order_relaxed); }
void countDroppedReference() noexcept { dropped.fetch_add(1, std::memory_order_relaxed); }

ReferenceAudit referenceAudit() noexcept { return {values.load(), added.load(), dropped.load()}; }

}  // namespace embedded

using embedded::enter;
using embedded::Operation;

void kxAddReference(const kxArray_tag* value) noexcept {
  enter<Operation::addReference>(value);
  embedded::valueOf(value).addReference();
}

bool kxDropReference(const kxArray_tag* value) noexcept {
  enter<Operation::dropReference>(value);
  return embedded::valueOf(value).dropReference();
}

void kxDestroyArray(const kxArray_tag* value) noexcept {
  enter<Operation::destroyArray>(value);
  embedded::destroyValue(&embedded::valueOf(value));
}
