#include "embedded/model/World.h"

#include <algorithm>

#include "embedded/model/Names.h"
#include "embedded/model/Unicode.h"

Kfh_KORVAL_fn::Kfh_KORVAL_fn(const embedded::FunctionDescription& description)
    : name(description.name),
      component(description.component),
      inNamespace(embedded::isDottedName(name) ? embedded::namespaceOf(name) : std::string_view()),
      imports(description.imports),
      arguments(description.arguments) {
  if (description.code.empty()) return;
  embedded::Routine::Context context{
      .name = name, .component = component, .inNamespace = inNamespace, .imports = imports};
  routine = std::make_shared<embedded::Routine>(std::move(context), embedded::widened(description.code));
}

namespace embedded {

Functions::Functions(const std::vector<FunctionDescription>& functions) {
  for (const FunctionDescription& function : functions) byName_.try_emplace(function.name, function);
}

const Kfh_KORVAL_fn* Functions::find(const std::string& name) const {
  const auto found = byName_.find(name);
  return found == byName_.end() ? nullptr : &found->second;
}

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
  // Variables are listed in the order in which they were made, also when they get other values.
  if (isNew) names_.push_back(name);
}

World::World(const Description& description)
    : classes(description),
      functions(description.functions),
      packages(description.packages),
      foreignClasses(description.foreignClasses),
      workspace(description.workspace, classes) {}

const ForeignClassDescription* World::foreignClass(const std::string& name) const {
  const auto found = std::ranges::find(foreignClasses, name, &ForeignClassDescription::name);
  return found == foreignClasses.end() ? nullptr : &*found;
}

}  // namespace embedded
