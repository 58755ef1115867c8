#include "embedded/model/Workspace.h"

#include "embedded/host/Session.h"
#include "host/Interpreter.h"

namespace embedded {

Workspace::Workspace(const std::vector<VariableDescription>& variables, const ClassSystem& classes) {
  for (const VariableDescription& variable : variables)
    set(variable.name, makeValue(variable.value, classes));
}

ValuePtr Workspace::find(const std::string& name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? ValuePtr() : found->second;
}

void Workspace::set(const std::string& name, ValuePtr value) {
  const auto [place, isNew] = values_.insert_or_assign(name, std::move(value));
  if (isNew) names_.push_back(name);
}

}  // namespace embedded

kxArray_tag* inGetValueFromCurrentWorkspace(const std::string& name) {
  embedded::enter<embedded::Operation::getValueFromCurrentWorkspace>(name);
  return embedded::session().workspace.find(name).detach();
}
