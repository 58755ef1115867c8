#pragma once

#include "embedded/classes/ClassSystem.h"
#include "host/Dispatcher.h"

namespace embedded {

/// The numbers of the built-in classes are their storage classes.
class ClassRegistry final : public KclassRegistry {
 public:
  explicit ClassRegistry(const ClassSystem& classes) : classes_(classes) {}

  int getClassNumber(const std::string& className) const override;
  bool isA(int classNumber, int baseNumber) const override;

 private:
  const ClassSystem& classes_;
};

}  // namespace embedded
