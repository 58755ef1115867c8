#pragma once

#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/host/Scopes.h"
#include "embedded/host/SearchPath.h"
#include "embedded/model/World.h"
#include "host/Dispatcher.h"

/// A class that takes part in the precedence of classes.
class KclassIdentifier {
 public:
  /// The classes over which it takes precedence.
  std::vector<const KclassIdentifier*> over;
};

namespace embedded {

class ActiveScope final : public KactiveScope {
 public:
  ActiveScope(const Kfh_KORVAL_fn* function, bool eligible, const ActiveScope* next)
      : function_(function), eligible_(eligible), next_(next) {}

  bool isEligible() const override;
  const Kfh_KORVAL_fn* getFunction() const override;
  const KactiveScope* getNext() const override;

 private:
  const Kfh_KORVAL_fn* function_;
  bool eligible_;
  const ActiveScope* next_;
};

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

class Dispatcher final : public Kdispatcher {
 public:
  Dispatcher(const Description& description, const World& world, Scopes& scopes);

  const ClassRegistry& classNumbers() const noexcept { return registry_; }

  const Kfh_KORVAL_fn* findFunction(const std::u16string& name) const override;
  bool hasQueryableExecutionStack() const override;
  const Kfh_KORVAL_fn* GetCurrentlyExecutingFunctionScopeOnQueryableExecutionStack() const override;
  const KactiveScope* getActiveScopes() const override;
  const KclassRegistry* getClassRegistry() const override;
  const KcurrentWorkingFolder* GetCurrentWorkingFolder() const override;
  boost::shared_ptr<const KsearchPath> GetCurrentPath() const override;
  std::vector<std::u16string> getDocumentedBuiltins() const override;

 private:
  Scopes& scopes_;
  bool queryable_;
  const Kfh_KORVAL_fn* executing_;
  std::deque<ActiveScope> active_;  // outermost first
  ClassRegistry registry_;
  CurrentFolder currentFolder_;
  boost::shared_ptr<const KsearchPath> path_;
  std::vector<std::u16string> builtins_;
};

/// Which class takes precedence over which: what a description says of a class, and nothing that follows from it.
class ObjectSystem final : public KobjectSystem {
 public:
  ObjectSystem(const Description& description, const ClassSystem& classes);

  const KclassIdentifier* getClassIdentifier(const std::string& className) const override;
  bool precedes(const KclassIdentifier* first, const KclassIdentifier* second) const override;

 private:
  /// A class has several names and one identifier.
  const std::string& key(const std::string& className) const;

  const ClassSystem& classes_;
  std::unordered_map<std::string, KclassIdentifier> identifiers_;
};

}  // namespace embedded
