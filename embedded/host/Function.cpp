#include "embedded/host/Function.h"

#include "embedded/host/Gate.h"
#include "embedded/model/DottedName.h"
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

std::string embedded::describe(const Kfh_KORVAL_fn* function) {
  return function == nullptr ? "null" : describe(function->name);
}
