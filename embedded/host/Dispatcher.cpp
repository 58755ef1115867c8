#include "embedded/host/Dispatcher.h"

#include <algorithm>
#include <boost/range/adaptor/reversed.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include "embedded/host/Session.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

constexpr int unknown = -1;

}  // namespace

bool ActiveScope::isEligible() const {
  return asked<Operation::scopeIsEligible>(function_).answer([this] { return eligible_; });
}

const Kfh_KORVAL_fn* ActiveScope::getFunction() const {
  return asked<Operation::scopeGetFunction>(function_).answer([this] { return function_; });
}

const KactiveScope* ActiveScope::getNext() const {
  return asked<Operation::scopeGetNext>(function_).answer([this] { return next_; });
}

int ClassRegistry::getClassNumber(const std::string& className) const {
  return asked<Operation::registryGetClassNumber>(className).answer([this, &className] {
    if (const Class* found = classes_.find(className); found != nullptr) return found->number();
    if (const auto other = others_.find(className); other != others_.end()) return other->second;
    return builtInClassCode(className).value_or(unknown);
  });
}

int ClassRegistry::numberOf(const Value& value) const {
  const Class* found = classes_.find(value.classId());
  // The name decides where there is no object, or none of a described class.
  if (found == nullptr) found = classes_.find(value.className());
  if (found != nullptr) return found->number();
  if (const auto code = builtInClassCode(value.className())) return *code;
  // Classes that the session does not describe get numbers below all others, at their first use.
  return others_.try_emplace(value.className(), unknown - 1 - static_cast<int>(others_.size())).first->second;
}

bool ClassRegistry::isA(int classNumber, int baseNumber) const {
  return asked<Operation::registryIsA>(classNumber, baseNumber).answer([this, classNumber, baseNumber] {
    const Class* derived = classes_.numbered(classNumber);
    const Class* base = classes_.numbered(baseNumber);
    if (derived != nullptr && base != nullptr) return derived->derivesFrom(*base);
    // Other classes derive from nothing.
    return classNumber == baseNumber && classNumber != unknown;
  });
}

Dispatcher::Dispatcher(const Description& description, const World& world, Scopes& scopes)
    : scopes_(scopes),
      queryable_(description.scopes.queryable),
      executing_(scopes.find(description.scopes.executing)),
      registry_(world.classes),
      currentFolder_(description.currentFolder),
      path_(boost::make_shared<SearchPath>(description.path)) {
  // From the last one on, because each points to the next.
  for (const ActiveScopeDescription& scope : boost::adaptors::reverse(description.scopes.active))
    active_.emplace_back(scopes.find(scope.function), scope.eligible,
                         active_.empty() ? nullptr : &active_.back());
  for (const std::string& name : description.builtins) builtins_.push_back(widened(name));
}

const Kfh_KORVAL_fn* Dispatcher::findFunction(const std::u16string& name) const {
  return asked<Operation::findFunction>(name).answer([this, &name] { return scopes_.find(narrowed(name)); });
}

bool Dispatcher::hasQueryableExecutionStack() const {
  return asked<Operation::hasQueryableExecutionStack>().answer([this] { return queryable_; });
}

const Kfh_KORVAL_fn* Dispatcher::GetCurrentlyExecutingFunctionScopeOnQueryableExecutionStack() const {
  return asked<Operation::getCurrentlyExecutingFunction>().answer([this] { return executing_; });
}

const KactiveScope* Dispatcher::getActiveScopes() const {
  return asked<Operation::getActiveScopes>().answer(
      [this] { return active_.empty() ? nullptr : &active_.back(); });
}

const KclassRegistry* Dispatcher::getClassRegistry() const {
  return asked<Operation::getClassRegistry>().answer([this] { return &registry_; });
}

const KcurrentWorkingFolder* Dispatcher::GetCurrentWorkingFolder() const {
  return asked<Operation::getCurrentWorkingFolder>().answer([this] { return &currentFolder_; });
}

boost::shared_ptr<const KsearchPath> Dispatcher::GetCurrentPath() const {
  return asked<Operation::getCurrentPath>().answer([this] { return path_; });
}

std::vector<std::u16string> Dispatcher::getDocumentedBuiltins() const {
  return asked<Operation::getDocumentedBuiltins>().answer([this] { return builtins_; });
}

ObjectSystem::ObjectSystem(const Description& description, const ClassSystem& classes) : classes_(classes) {
  for (const ClassDescription& described : description.classes) {
    KclassIdentifier& first = identifiers_[identityOf(described.component, described.name)];
    // By address, which stays: the table moves its buckets when it grows, but not what is in them.
    for (const std::string& second : described.precedence) first.over.push_back(&identifiers_[key(second)]);
  }
}

const std::string& ObjectSystem::key(const std::string& className) const {
  const Class* found = classes_.find(className);
  return found == nullptr ? className : found->names().id.text();
}

const KclassIdentifier* ObjectSystem::getClassIdentifier(const std::string& className) const {
  return asked<Operation::getClassIdentifierNamed>(className).answer([this, &className] {
    const auto found = identifiers_.find(key(className));
    return found == identifiers_.end() ? nullptr : &found->second;
  });
}

bool ObjectSystem::precedes(const KclassIdentifier* first, const KclassIdentifier* second) const {
  return asked<Operation::precedes>().answer([first, second] {
    return first != nullptr && second != nullptr &&
           std::ranges::find(first->over, second) != first->over.end();
  });
}

}  // namespace embedded

KactiveScope::~KactiveScope() = default;
KclassRegistry::~KclassRegistry() = default;
Kdispatcher::~Kdispatcher() = default;
KobjectSystem::~KobjectSystem() = default;

Kdispatcher* Kdispatcher::getDispatcher() {
  return embedded::asked<embedded::Operation::getDispatcher>().answer(
      [] { return &embedded::session().dispatcher; });
}

const KobjectSystem* kdGetObjectSystem() {
  return embedded::asked<embedded::Operation::getObjectSystem>().answer(
      [] { return &embedded::session().objectSystem; });
}
