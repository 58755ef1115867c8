#include "embedded/snapshot/Checks.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "embedded/Outline.h"
#include "embedded/model/Names.h"
#include "embedded/model/Unicode.h"
#include "embedded/snapshot/Limits.h"
#include "syntax/Characters.h"
#include "syntax/Keywords.h"

namespace embedded {

namespace snapshot {

void CheckContext::fail(const std::string& code, const JsonPointer& pointer,
                        const std::string& reason) const {
  throw SnapshotError(code, file, pointer.text(), reason);
}

const ForeignClassDescription* CheckContext::foreignClass(const std::string& name) const {
  const auto found = foreignClasses.find(name);
  return found == foreignClasses.end() ? nullptr : found->second;
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
  if (static_cast<std::size_t>(std::ranges::count(name, '.')) >= mostParts)
    context.fail(
        "snapshot.too-deep", pointer,
        "the dotted name " + inQuotes(name) + " has more than " + std::to_string(mostParts) + " parts");
}

void checkClassSystemName(const CheckContext& context, const std::string& name, const JsonPointer& pointer) {
  checkName(context, name, pointer);
  if (std::ranges::any_of(name, [](unsigned char byte) { return byte >= 0x80; }))
    context.fail(
        "snapshot.not-ascii", pointer,
        "the name " + inQuotes(name) + " is not ASCII, as those of classes, members and namespaces are");
}

void checkIdentifier(const CheckContext& context, const std::string& name, const JsonPointer& pointer) {
  checkName(context, name, pointer);
  const std::u16string word = widened(name);
  if (syntax::isNameStart(word.front()) && std::ranges::all_of(word, syntax::isNamePart) &&
      syntax::keywordOf(word) == syntax::Keyword::None)
    return;
  context.fail("snapshot.bad-name", pointer, "code cannot have made the variable " + inQuotes(name));
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

/// Counts what namespaces take: each has a name that holds those around it.
class NamespaceCount {
 public:
  explicit NamespaceCount(const CheckContext& context) : context_(context) {}

  /// The namespace of that name, and those around it. No name stands for none.
  void add(std::string_view name, const JsonPointer& pointer) {
    text_ += name.size();
    // Those around one that has been met have been met too.
    for (; !name.empty() && met_.insert(name).second; name = namespaceOf(name)) memory_ += name.size() + each;
    if (memory_ > mostMemoryOf(text_))
      context_.fail("snapshot.too-big", pointer,
                    std::to_string(met_.size()) + " namespaces are more than their names may make");
  }

 private:
  static constexpr std::size_t each = 500;  // bytes beside the name

  const CheckContext& context_;
  std::unordered_set<std::string_view> met_;
  std::size_t text_ = 0;
  std::size_t memory_ = 0;
};

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

void checkNamespaces(const CheckContext& context) {
  NamespaceCount count(context);
  const Description& description = context.description;
  forEach(description.namespaces, root, "namespaces", [&](const std::string& name, const JsonPointer& here) {
    checkDottedName(context, name, here);
    checkClassSystemName(context, name, here);
    count.add(name, here);
  });
  forEach(description.classes, root, "classes",
          [&](const ClassDescription& described, const JsonPointer& here) {
            count.add(namespaceOf(described.name), {here, "name"});
          });
  forEach(description.functions, root, "functions",
          [&](const FunctionDescription& function, const JsonPointer& here) {
            if (!isDottedName(function.name) || namespaceOf(function.name).empty()) return;
            const JsonPointer name(here, "name");
            // Its namespace lists it among its own names.
            checkClassSystemName(context, function.name, name);
            count.add(namespaceOf(function.name), name);
          });
}

void checkFunctions(const CheckContext& context) {
  FunctionNames names;
  forEach(context.description.functions, root, "functions",
          [&](const FunctionDescription& function, const JsonPointer& here) {
            checkFunction(context, function, here, names);
          });
}

void checkSurroundings(const CheckContext& context) {
  const Description& description = context.description;
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
  // Of several with one name the first.
  for (const auto& foreign : description.foreignClasses)
    context.foreignClasses.try_emplace(foreign.name, &foreign);
  // The order matters: later checks look classes up by names, and walk superclasses, which earlier ones have
  // made sure of.
  checkClassNames(context);
  checkClassReferences(context);
  checkSuperclassCycles(context);
  checkPrecedence(context);
  checkFunctions(context);
  checkNamespaces(context);
  checkSurroundings(context);
  checkWorkspace(context);
  checkCode(context);
  checkPropertyValues(context);
}

}  // namespace embedded
