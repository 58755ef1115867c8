#pragma once

#include <string>
#include <unordered_map>

#include "embedded/model/ClassSystem.h"
#include "host/Dispatcher.h"

namespace embedded {

class Value;

/// The numbers of the built-in classes are their storage classes. Classes that only values know (foreign ones) get
/// theirs when a value is asked for it.
class ClassRegistry final : public KclassRegistry {
 public:
  explicit ClassRegistry(const ClassSystem& classes) : classes_(classes) {}

  int getClassNumber(const std::string& className) const override;
  bool isA(int classNumber, int baseNumber) const override;

  int numberOf(const Value& value) const;

 private:
  const ClassSystem& classes_;
  mutable std::unordered_map<std::string, int> others_;
};

}  // namespace embedded
