#pragma once

#include <cstddef>

#include "embedded/model/Value.h"

namespace embedded {

/// Makes descriptions of live values. What is shared between values is described once for each of them, so that a few
/// cells inside each other can stand for more than any memory holds: one describer makes so many and no more.
class ValueDescriber {
 public:
  explicit ValueDescriber(const ClassSystem& classes) : classes_(classes) {}

  /// What makeValue() makes the same value of. Throws SnapshotError, without a place, for what no description says.
  ValueDescription describe(const Value& value);

 private:
  class Level;
  struct ByKind;

  /// Null stands for an empty array.
  ValueDescription describeOrEmpty(const ValuePtr& value);
  std::vector<PropertyValue> describeNamed(const std::vector<std::pair<std::string, ValuePtr>>& values);

  const ClassSystem& classes_;
  std::size_t depth_ = 0;
  std::size_t count_ = 0;
};

}  // namespace embedded
