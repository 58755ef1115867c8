#include "embedded/dispatcher/Function.h"

#include "embedded/classes/DottedName.h"
#include "embedded/gate/Gate.h"

Kfh_KORVAL_fn::Kfh_KORVAL_fn(const embedded::FunctionDescription& description)
    : name(description.name),
      component(description.component),
      inNamespace(embedded::isDottedName(name) ? embedded::namespaceOf(name) : std::string_view()),
      imports(description.imports) {}

std::string embedded::describe(const Kfh_KORVAL_fn* function) {
  return function == nullptr ? "null" : describe(function->name);
}
