#include "embedded/dispatcher/ClassRegistry.h"

#include "embedded/gate/Gate.h"
#include "embedded/values/Value.h"

namespace embedded {

namespace {

constexpr int unknown = -1;

}  // namespace

int ClassRegistry::getClassNumber(const std::string& className) const {
  enter<Operation::registryGetClassNumber>(className);
  if (const Class* found = classes_.find(className); found != nullptr) return found->number();
  return builtInClassCode(className).value_or(unknown);
}

bool ClassRegistry::isA(int classNumber, int baseNumber) const {
  enter<Operation::registryIsA>(classNumber, baseNumber);
  const Class* derived = classes_.numbered(classNumber);
  const Class* base = classes_.numbered(baseNumber);
  if (derived != nullptr && base != nullptr) return derived->derivesFrom(*base);
  return classNumber == baseNumber && classNumber != unknown;
}

}  // namespace embedded

KclassRegistry::~KclassRegistry() = default;
