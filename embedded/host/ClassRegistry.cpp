#include "embedded/host/ClassRegistry.h"

#include "embedded/host/Gate.h"
#include "embedded/model/Value.h"

namespace embedded {

namespace {

constexpr int unknown = -1;

}  // namespace

int ClassRegistry::getClassNumber(const std::string& className) const {
  enter<Operation::registryGetClassNumber>(className);
  if (const Class* found = classes_.find(className); found != nullptr) return found->number();
  if (const auto other = others_.find(className); other != others_.end()) return other->second;
  return builtInClassCode(className).value_or(unknown);
}

int ClassRegistry::numberOf(const Value& value) const {
  const Object* object = value.object();
  const Class* found = object == nullptr ? nullptr : classes_.find(object->classId);
  if (found == nullptr) found = classes_.find(value.className());
  if (found != nullptr) return found->number();
  if (const auto code = builtInClassCode(value.className())) return *code;
  return others_.try_emplace(value.className(), unknown - 1 - static_cast<int>(others_.size())).first->second;
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
