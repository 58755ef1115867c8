#include <unordered_set>

#include "embedded/snapshot/Checks.h"

namespace embedded::snapshot {

namespace {

using FunctionNames = std::unordered_set<std::string>;

void checkArguments(const CheckContext& context, const std::vector<ArgumentDescription>& arguments,
                    const Place& place) {
  std::unordered_set<std::string> names;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const Place argument(place, index);
    checkName(context, arguments[index].name, {argument, "name"});
    if (!names.insert(arguments[index].name).second) {
      context.fail("snapshot.duplicate-argument", {argument, "name"},
                   "there is already an argument " + inQuotes(arguments[index].name));
    }
    const Place validators(argument, "validators");
    for (std::size_t at = 0; at < arguments[index].validators.size(); ++at)
      checkName(context, arguments[index].validators[at], {validators, at});
  }
}

void checkFunction(const CheckContext& context, const FunctionDescription& function, const Place& place,
                   FunctionNames& identities) {
  checkDottedName(context, function.name, {place, "name"});
  if (!function.component.empty()) checkName(context, function.component, {place, "component"});
  const std::string identity = identityOf(function.component, function.name);
  if (!identities.insert(identity).second) {
    context.fail("snapshot.duplicate-function", {place, "name"},
                 "there is already a function " + inQuotes(identity));
  }
  const Place imports(place, "imports");
  for (std::size_t index = 0; index < function.imports.size(); ++index)
    checkDottedName(context, function.imports[index], {imports, index});
  if (!function.arguments) return;
  const Place arguments(place, "arguments");
  checkArguments(context, function.arguments->inputs, {arguments, "inputs"});
  checkArguments(context, function.arguments->outputs, {arguments, "outputs"});
}

void requireFunction(const CheckContext& context, const std::string& name, const Place& place,
                     const FunctionNames& names) {
  if (names.contains(name)) return;
  context.fail("snapshot.unknown-function", place, inQuotes(name) + " is no function of this snapshot");
}

void checkScopes(const CheckContext& context, const FunctionNames& names) {
  const ScopesDescription& scopes = context.description.scopes;
  const Place root;
  const Place place(root, "scopes");
  if (!scopes.executing.empty()) requireFunction(context, scopes.executing, {place, "executing"}, names);
  const Place active(place, "active");
  for (std::size_t index = 0; index < scopes.active.size(); ++index) {
    const Place scope(active, index);
    requireFunction(context, scopes.active[index].function, {scope, "function"}, names);
  }
}

}  // namespace

void checkFunctionsAndScopes(const CheckContext& context) {
  const auto& functions = context.description.functions;
  const Place root;
  const Place place(root, "functions");
  FunctionNames names;
  for (std::size_t index = 0; index < functions.size(); ++index)
    checkFunction(context, functions[index], {place, index}, names);
  for (const auto& function : functions) names.insert(function.name);
  checkScopes(context, names);
}

}  // namespace embedded::snapshot
