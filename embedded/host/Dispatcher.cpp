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
  enter<Operation::scopeIsEligible>(function_);
  return eligible_;
}

const Kfh_KORVAL_fn* ActiveScope::getFunction() const {
  enter<Operation::scopeGetFunction>(function_);
  return function_;
}

const KactiveScope* ActiveScope::getNext() const {
  enter<Operation::scopeGetNext>(function_);
  return next_;
}

int ClassRegistry::getClassNumber(const std::string& className) const {
  enter<Operation::registryGetClassNumber>(className);
  if (const Class* found = classes_.find(className); found != nullptr) return found->number();
  if (const auto other = others_.find(className); other != others_.end()) return other->second;
  return builtInClassCode(className).value_or(unknown);
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
  enter<Operation::registryIsA>(classNumber, baseNumber);
  const Class* derived = classes_.numbered(classNumber);
  const Class* base = classes_.numbered(baseNumber);
  if (derived != nullptr && base != nullptr) return derived->derivesFrom(*base);
  // Other classes derive from nothing.
  return classNumber == baseNumber && classNumber != unknown;
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
  enter<Operation::findFunction>(name);
  return scopes_.find(narrowed(name));
}

bool Dispatcher::hasQueryableExecutionStack() const {
  enter<Operation::hasQueryableExecutionStack>();
  return queryable_;
}

const Kfh_KORVAL_fn* Dispatcher::GetCurrentlyExecutingFunctionScopeOnQueryableExecutionStack() const {
  enter<Operation::getCurrentlyExecutingFunction>();
  return executing_;
}

const KactiveScope* Dispatcher::getActiveScopes() const {
  enter<Operation::getActiveScopes>();
  return active_.empty() ? nullptr : &active_.back();
}

const KclassRegistry* Dispatcher::getClassRegistry() const {
  enter<Operation::getClassRegistry>();
  return &registry_;
}

const KcurrentWorkingFolder* Dispatcher::GetCurrentWorkingFolder() const {
  enter<Operation::getCurrentWorkingFolder>();
  return &currentFolder_;
}

boost::shared_ptr<const KsearchPath> Dispatcher::GetCurrentPath() const {
  enter<Operation::getCurrentPath>();
  return path_;
}

std::vector<std::u16string> Dispatcher::getDocumentedBuiltins() const {
  enter<Operation::getDocumentedBuiltins>();
  return builtins_;
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
  enter<Operation::getClassIdentifierNamed>(className);
  const auto found = identifiers_.find(key(className));
  return found == identifiers_.end() ? nullptr : &found->second;
}

bool ObjectSystem::precedes(const KclassIdentifier* first, const KclassIdentifier* second) const {
  enter<Operation::precedes>();
  return first != nullptr && second != nullptr && std::ranges::find(first->over, second) != first->over.end();
}

}  // namespace embedded

KactiveScope::~KactiveScope() = default;
KclassRegistry::~KclassRegistry() = default;
Kdispatcher::~Kdispatcher() = default;
KobjectSystem::~KobjectSystem() = default;

Kdispatcher* Kdispatcher::getDispatcher() {
  embedded::enter<embedded::Operation::getDispatcher>();
  return &embedded::session().dispatcher;
}

const KobjectSystem* kdGetObjectSystem() {
  embedded::enter<embedded::Operation::getObjectSystem>();
  return &embedded::session().objectSystem;
}
