#include "embedded/snapshot/Checks.h"

#include <algorithm>
#include <functional>
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

void CheckContext::fail(const std::string& code, const JsonPointer& pointer,
                        const std::string& reason) const {
  throw SnapshotError(code, file, pointer.text(), reason);
}

const ForeignClassDescription* CheckContext::foreignClass(const std::string& name) const {
  const auto& all = description.foreignClasses;
  const auto found = std::ranges::find(all, name, &ForeignClassDescription::name);
  return found == all.end() ? nullptr : &*found;
}

std::size_t CheckContext::requireClass(const std::string& name, const JsonPointer& pointer,
                                       const std::string& role) const {
  const auto found = classes.find(name);
  if (!found)
    fail("snapshot.unknown-class", pointer, role + " " + inQuotes(name) + " is no class of this snapshot");
  return *found;
}

void checkName(const CheckContext& context, const std::string& name, const JsonPointer& pointer) {
  if (name.empty()) context.fail("snapshot.bad-name", pointer, "a name must not be empty");
  // The host hands names out as C strings, which would end there.
  if (name.find('\0') != std::string::npos)
    context.fail("snapshot.bad-name", pointer, "a name must not hold the character U+0000");
}

void checkDottedName(const CheckContext& context, const std::string& name, const JsonPointer& pointer) {
  checkName(context, name, pointer);
  const bool emptyPart = name.front() == '.' || name.back() == '.' || name.find("..") != std::string::npos;
  if (emptyPart)
    context.fail("snapshot.bad-name", pointer, "a part of the dotted name " + inQuotes(name) + " is empty");
}

namespace {

using Names = std::vector<std::string>;

void checkNames(const CheckContext& context, const Names& names, const JsonPointer& outer,
                std::string_view key) {
  forEach(names, outer, key, std::bind_front(checkName, std::cref(context)));
}

void checkDottedNames(const CheckContext& context, const Names& names, const JsonPointer& outer,
                      std::string_view key) {
  forEach(names, outer, key, std::bind_front(checkDottedName, std::cref(context)));
}

using FunctionNames = std::unordered_set<std::string>;

void checkArguments(const CheckContext& context, const std::vector<ArgumentDescription>& arguments,
                    const JsonPointer& pointer, std::string_view key) {
  std::unordered_set<std::string> names;
  forEach(arguments, pointer, key, [&](const ArgumentDescription& argument, const JsonPointer& here) {
    checkName(context, argument.name, {here, "name"});
    if (!names.insert(argument.name).second) {
      context.fail("snapshot.duplicate-argument", {here, "name"},
                   "there is already an argument " + inQuotes(argument.name));
    }
    checkNames(context, argument.validators, here, "validators");
  });
}

void checkFunction(const CheckContext& context, const FunctionDescription& function,
                   const JsonPointer& pointer, FunctionNames& identities) {
  checkDottedName(context, function.name, {pointer, "name"});
  if (!function.component.empty()) checkName(context, function.component, {pointer, "component"});
  const std::string identity = identityOf(function.component, function.name);
  if (!identities.insert(identity).second) {
    context.fail("snapshot.duplicate-function", {pointer, "name"},
                 "there is already a function " + inQuotes(identity));
  }
  checkDottedNames(context, function.imports, pointer, "imports");
  if (!function.arguments) return;
  const JsonPointer arguments(pointer, "arguments");
  checkArguments(context, function.arguments->inputs, arguments, "inputs");
  checkArguments(context, function.arguments->outputs, arguments, "outputs");
}

void requireFunction(const CheckContext& context, const std::string& name, const JsonPointer& pointer,
                     const FunctionNames& names) {
  if (names.contains(name)) return;
  context.fail("snapshot.unknown-function", pointer, inQuotes(name) + " is no function of this snapshot");
}

void checkScopes(const CheckContext& context, const FunctionNames& names) {
  const ScopesDescription& scopes = context.description.scopes;
  const JsonPointer pointer(root, "scopes");
  if (!scopes.executing.empty()) requireFunction(context, scopes.executing, {pointer, "executing"}, names);
  forEach(scopes.active, pointer, "active",
          [&](const ActiveScopeDescription& scope, const JsonPointer& here) {
            requireFunction(context, scope.function, {here, "function"}, names);
          });
}

void checkText(const CheckContext& context, const std::string& code, const JsonPointer& pointer) {
  if (code.empty()) return;
  // Parsed now, so that a mistake is told with its place in the file and not when the code first runs.
  if (const auto failure = embedded::checkCode(widened(code)))
    context.fail("snapshot.bad-code", pointer,
                 "line " + std::to_string(failure->line) + ", column " + std::to_string(failure->column) +
                     " of the code: " + failure->message);
}

void checkMembers(const CheckContext& context, const ClassDescription& described,
                  const JsonPointer& pointer) {
  forEach(described.properties, pointer, "properties",
          [&](const PropertyDescription& property, const JsonPointer& here) {
            checkText(context, property.getter, {here, "getter"});
          });
  forEach(described.methods, pointer, "methods",
          [&](const MethodDescription& method, const JsonPointer& here) {
            checkText(context, method.code, {here, "code"});
          });
}

}  // namespace

void checkFunctionsAndScopes(const CheckContext& context) {
  const auto& functions = context.description.functions;
  FunctionNames names;
  forEach(functions, root, "functions", [&](const FunctionDescription& function, const JsonPointer& here) {
    checkFunction(context, function, here, names);
  });
  // Only now: two functions may share a name, but not an identity, and scopes may use either.
  for (const auto& function : functions) names.insert(function.name);
  checkScopes(context, names);
}

void checkSurroundings(const CheckContext& context) {
  const Description& description = context.description;
  checkDottedNames(context, description.namespaces, root, "namespaces");
  forEach(description.path, root, "path", [&](const PathItemDescription& item, const JsonPointer& here) {
    checkName(context, item.folder, {here, "folder"});
  });
  const std::string& folder = description.currentFolder;
  if (!folder.empty()) checkName(context, folder, {root, "currentFolder"});
  forEach(description.packages, root, "packages",
          [&](const PackageDescription& package, const JsonPointer& here) {
            checkName(context, package.name, {here, "name"});
          });
  forEach(description.foreignClasses, root, "foreignClasses",
          [&](const ForeignClassDescription& foreign, const JsonPointer& here) {
            checkDottedName(context, foreign.name, {here, "name"});
          });
  checkNames(context, description.builtins, root, "builtins");
}

void checkCode(const CheckContext& context) {
  forEach(context.description.classes, root, "classes",
          [&](const ClassDescription& described, const JsonPointer& here) {
            checkMembers(context, described, here);
          });
  forEach(context.description.functions, root, "functions",
          [&](const FunctionDescription& function, const JsonPointer& here) {
            checkText(context, function.code, {here, "code"});
          });
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
