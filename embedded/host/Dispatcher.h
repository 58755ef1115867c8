#pragma once

#include <deque>
#include <string>
#include <unordered_map>

#include "embedded/host/ActiveScope.h"
#include "embedded/host/ClassRegistry.h"
#include "embedded/host/CurrentFolder.h"
#include "embedded/host/Function.h"

namespace embedded {

class Dispatcher final : public Kdispatcher {
 public:
  Dispatcher(const Description& description, const ClassSystem& classes);

  const Kfh_KORVAL_fn* function(const std::string& name) const;

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
  std::unordered_map<std::string, Kfh_KORVAL_fn> functions_;
  bool queryable_;
  const Kfh_KORVAL_fn* executing_;
  std::deque<ActiveScope> scopes_;  // outermost first
  ClassRegistry registry_;
  CurrentFolder currentFolder_;
  boost::shared_ptr<const KsearchPath> path_;
  std::vector<std::u16string> builtins_;
};

}  // namespace embedded
