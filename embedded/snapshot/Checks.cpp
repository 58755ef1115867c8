#include "embedded/snapshot/Checks.h"

#include <unordered_set>

#include "embedded/Outline.h"
#include "embedded/model/Names.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace snapshot {

std::optional<std::size_t> ClassNames::owner(const std::string& name) const {
  return findIn({&identities_, &aliases_}, name);
}

std::optional<std::size_t> ClassNames::find(const std::string& name) const {
  return findIn({&identities_, &dotted_, &aliases_}, name);
}

std::optional<std::size_t> ClassNames::findIn(std::initializer_list<const Names*> tables,
                                              const std::string& name) {
  for (const Names* table : tables) {
    if (const auto found = table->find(name); found != table->end()) return found->second;
  }
  return std::nullopt;
}

void CheckContext::fail(const std::string& code, const Place& place, const std::string& reason) const {
  throw SnapshotError(code, file, place.pointer(), reason);
}

std::size_t CheckContext::requireClass(const std::string& name, const Place& place,
                                       const std::string& role) const {
  const auto found = classes.find(name);
  if (!found)
    fail("snapshot.unknown-class", place, role + " " + inQuotes(name) + " is no class of this snapshot");
  return *found;
}

void checkName(const CheckContext& context, const std::string& name, const Place& place) {
  if (name.empty()) context.fail("snapshot.bad-name", place, "a name must not be empty");
  // The host hands names out as C strings, which would end there.
  if (name.find('\0') != std::string::npos)
    context.fail("snapshot.bad-name", place, "a name must not hold the character U+0000");
}

void checkDottedName(const CheckContext& context, const std::string& name, const Place& place) {
  checkName(context, name, place);
  const bool emptyPart = name.front() == '.' || name.back() == '.' || name.find("..") != std::string::npos;
  if (emptyPart)
    context.fail("snapshot.bad-name", place, "a part of the dotted name " + inQuotes(name) + " is empty");
}

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

void checkText(const CheckContext& context, const std::string& code, const Place& place) {
  if (code.empty()) return;
  // Parsed now, so that a mistake is told with its place in the file and not when the code first runs.
  if (const auto failure = embedded::checkCode(widened(code)))
    context.fail("snapshot.bad-code", place,
                 "line " + std::to_string(failure->line) + ", column " + std::to_string(failure->column) +
                     " of the code: " + failure->message);
}

void checkMembers(const CheckContext& context, const ClassDescription& described, const Place& place) {
  const Place properties(place, "properties");
  for (std::size_t index = 0; index < described.properties.size(); ++index) {
    const Place property(properties, index);
    checkText(context, described.properties[index].getter, {property, "getter"});
  }
  const Place methods(place, "methods");
  for (std::size_t index = 0; index < described.methods.size(); ++index) {
    const Place method(methods, index);
    checkText(context, described.methods[index].code, {method, "code"});
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
  // Only now: two functions may share a name, but not an identity, and scopes may use either.
  for (const auto& function : functions) names.insert(function.name);
  checkScopes(context, names);
}

void checkSurroundings(const CheckContext& context) {
  const Place root;
  const Description& description = context.description;
  const Place namespaces(root, "namespaces");
  for (std::size_t index = 0; index < description.namespaces.size(); ++index)
    checkDottedName(context, description.namespaces[index], {namespaces, index});
  const Place path(root, "path");
  for (std::size_t index = 0; index < description.path.size(); ++index) {
    const Place item(path, index);
    checkName(context, description.path[index].folder, {item, "folder"});
  }
  const std::string& folder = description.currentFolder;
  if (!folder.empty()) checkName(context, folder, {root, "currentFolder"});
  const Place packages(root, "packages");
  for (std::size_t index = 0; index < description.packages.size(); ++index) {
    const Place package(packages, index);
    checkName(context, description.packages[index].name, {package, "name"});
  }
  const Place foreignClasses(root, "foreignClasses");
  for (std::size_t index = 0; index < description.foreignClasses.size(); ++index) {
    const Place foreign(foreignClasses, index);
    checkDottedName(context, description.foreignClasses[index].name, {foreign, "name"});
  }
  const Place builtins(root, "builtins");
  for (std::size_t index = 0; index < description.builtins.size(); ++index)
    checkName(context, description.builtins[index], {builtins, index});
}

void checkCode(const CheckContext& context) {
  const Place root;
  const Place classes(root, "classes");
  const Place functions(root, "functions");
  for (std::size_t index = 0; index < context.description.classes.size(); ++index)
    checkMembers(context, context.description.classes[index], {classes, index});
  for (std::size_t index = 0; index < context.description.functions.size(); ++index) {
    const Place function(functions, index);
    checkText(context, context.description.functions[index].code, {function, "code"});
  }
}

}  // namespace snapshot

void checkDescription(const Description& description, const std::string& file) {
  snapshot::CheckContext context{description, file};
  // The order matters: later checks look classes up by names, and walk superclasses, which earlier ones have
  // made sure of.
  checkClassNames(context);
  checkClassReferences(context);
  checkSuperclassCycles(context);
  checkPrecedence(context);
  checkFunctionsAndScopes(context);
  checkSurroundings(context);
  checkWorkspace(context);
  checkCode(context);
  checkPropertyValues(context);
}

}  // namespace embedded
