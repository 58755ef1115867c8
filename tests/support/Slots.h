#pragma once

#include <cstring>

/// The place of a virtual operation among those of its class, as a pointer to it holds it; the destructor takes two.
template <class Operation>
long slotOf(Operation operation) {
  long offset = 0;
  std::memcpy(&offset, &operation, sizeof offset);
  return (offset & ~1L) / static_cast<long>(sizeof(void*));
}

/// The same of the overload that has that type.
template <class Type, class Class>
long slotOf(Type Class::*operation) {
  return slotOf<Type Class::*>(operation);
}
