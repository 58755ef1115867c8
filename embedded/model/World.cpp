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

Kfh_KORVAL_fn::Kfh_KORVAL_fn(std::string scopeName, const embedded::Routine& code)
    : name(std::move(scopeName)),
      component(code.context().component),
      inNamespace(code.context().inNamespace),
      imports(code.context().imports),
      ownClass(code.context().ownClass),
      // Without an owner: it is not this one that keeps the routine.
      routine(std::shared_ptr<const void>(), &code) {}

Kfh_KORVAL_fn::Kfh_KORVAL_fn(std::string scopeName, const embedded::Class& definingClass)
    : name(std::move(scopeName)),
      component(definingClass.names().component.text()),
      inNamespace(embedded::namespaceOf(definingClass.names().dotted.text())),
      ownClass(&definingClass) {}

namespace embedded {

Functions::Functions(const std::vector<FunctionDescription>& functions) {
  for (const FunctionDescription& described : functions) {
    const Kfh_KORVAL_fn& function = functions_.emplace_back(described);
    byName_[function.name].push_back(&function);
    if (!function.component.empty()) byName_[identityOf(function.component, function.name)] = {&function};
  }
}

const Kfh_KORVAL_fn* Functions::findFor(std::string_view component, const std::string& name) const {
  const auto found = byName_.find(name);
  if (found == byName_.end()) return nullptr;
  const auto& candidates = found->second;
  auto best = std::ranges::find(candidates, component, &Kfh_KORVAL_fn::component);
  if (best == candidates.end()) best = std::ranges::find(candidates, "", &Kfh_KORVAL_fn::component);
  return best == candidates.end() ? candidates.front() : *best;
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
