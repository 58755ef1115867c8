#include "embedded/values/Workspace.h"

#include "embedded/Session.h"
#include "host/Interpreter.h"

namespace embedded {

Workspace::Workspace(const std::vector<VariableDescription>& variables, const ClassSystem& classes) {
  for (const VariableDescription& variable : variables) {
    names_.push_back(variable.name);
    values_[variable.name] = makeValue(variable.value, classes);
  }
}

ValuePtr Workspace::find(const std::string& name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? ValuePtr() : found->second;
}

}  // namespace embedded

kxArray_tag* inGetValueFromCurrentWorkspace(const std::string& name) {
  embedded::enter<embedded::Operation::getValueFromCurrentWorkspace>(name);
  return embedded::session().workspace.find(name).detach();
}
