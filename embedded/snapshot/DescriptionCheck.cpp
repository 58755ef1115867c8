#include "embedded/snapshot/DescriptionCheck.h"

#include "embedded/Host.h"
#include "embedded/snapshot/Checks.h"

namespace embedded {

namespace snapshot {

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
  if (name.find('\0') != std::string::npos)
    context.fail("snapshot.bad-name", place, "a name must not hold the character U+0000");
}

void checkDottedName(const CheckContext& context, const std::string& name, const Place& place) {
  checkName(context, name, place);
  const bool emptyPart = name.front() == '.' || name.back() == '.' || name.find("..") != std::string::npos;
  if (emptyPart)
    context.fail("snapshot.bad-name", place, "a part of the dotted name " + inQuotes(name) + " is empty");
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

}  // namespace snapshot

void checkDescription(const Description& description, const std::string& file) {
  snapshot::CheckContext context{description, file};
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
