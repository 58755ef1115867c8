#pragma once

#include <span>
#include <vector>

#include "embedded/language/Interpreter.h"

namespace embedded {

/// One index of an element access: every element, or these, which count from 0.
struct Subscript {
  bool every = false;
  std::vector<std::size_t> positions = {};
  /// Of the index itself.
  Value::Size size = {};
};

/// From numbers, which count from 1, or from logicals.
Subscript subscriptOf(Interpreter& interpreter, const Value& index);

/// Linear with one subscript; with several, the last one runs over all dimensions that are left.
ValuePtr indexed(Interpreter& interpreter, const Value& value, std::span<const Subscript> subscripts);

/// The value with those elements replaced, and grown to hold them.
ValuePtr withElements(Interpreter& interpreter, const ValuePtr& value, std::span<const Subscript> subscripts,
                      const ValuePtr& elements);

/// What `end` means as the index at that place of so many.
std::size_t lastIndex(const Value& value, std::size_t place, std::size_t count);

ValuePtr transposed(Interpreter& interpreter, const Value& value);

}  // namespace embedded
