#include "embedded/host/ObjectSystem.h"

#include <algorithm>

#include "embedded/host/Session.h"
#include "embedded/snapshot/ClassNames.h"

namespace embedded {

ObjectSystem::ObjectSystem(const Description& description, const ClassSystem& classes) : classes_(classes) {
  for (const ClassDescription& described : description.classes) {
    KclassIdentifier& first = identifiers_[snapshot::identityOf(described.component, described.name)];
    for (const std::string& second : described.precedence) first.over.push_back(&identifiers_[key(second)]);
  }
}

const std::string& ObjectSystem::key(const std::string& className) const {
  const Class* found = classes_.find(className);
  return found == nullptr ? className : found->names().id.text();
}

const KclassIdentifier* ObjectSystem::getClassIdentifier(const std::string& className) const {
  enter<Operation::getClassIdentifierNamed>(className);
  const auto found = identifiers_.find(key(className));
  return found == identifiers_.end() ? nullptr : &found->second;
}

bool ObjectSystem::precedes(const KclassIdentifier* first, const KclassIdentifier* second) const {
  enter<Operation::precedes>();
  return first != nullptr && second != nullptr && std::ranges::find(first->over, second) != first->over.end();
}

}  // namespace embedded

KobjectSystem::~KobjectSystem() = default;

const KobjectSystem* kdGetObjectSystem() {
  embedded::enter<embedded::Operation::getObjectSystem>();
  return &embedded::session().objectSystem;
}
