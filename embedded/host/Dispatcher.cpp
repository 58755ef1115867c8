#include "embedded/host/Dispatcher.h"

#include <boost/range/adaptor/reversed.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include "embedded/host/SearchPath.h"
#include "embedded/host/Session.h"
#include "embedded/model/Unicode.h"

namespace embedded {

Dispatcher::Dispatcher(const Description& description, const ClassSystem& classes)
    : queryable_(description.scopes.queryable),
      registry_(classes),
      currentFolder_(description.currentFolder),
      path_(boost::make_shared<SearchPath>(description.path)) {
  for (const FunctionDescription& function : description.functions)
    functions_.try_emplace(function.name, function);
  executing_ = function(description.scopes.executing);
  for (const ActiveScopeDescription& scope : boost::adaptors::reverse(description.scopes.active))
    scopes_.emplace_back(function(scope.function), scope.eligible,
                         scopes_.empty() ? nullptr : &scopes_.back());
  for (const std::string& name : description.builtins) builtins_.push_back(widened(name));
}

const Kfh_KORVAL_fn* Dispatcher::function(const std::string& name) const {
  const auto found = functions_.find(name);
  return found == functions_.end() ? nullptr : &found->second;
}

const Kfh_KORVAL_fn* Dispatcher::findFunction(const std::u16string& name) const {
  enter<Operation::findFunction>(name);
  return name.empty() ? nullptr : function(narrowed(name));
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
  return scopes_.empty() ? nullptr : &scopes_.back();
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

}  // namespace embedded

Kdispatcher::~Kdispatcher() = default;

Kdispatcher* Kdispatcher::getDispatcher() {
  embedded::enter<embedded::Operation::getDispatcher>();
  return &embedded::session().dispatcher;
}
