#pragma once

// What a description must be, and the parts of checking it.

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/Description.h"
#include "embedded/model/ClassNames.h"
#include "embedded/snapshot/JsonPointer.h"

namespace embedded {

/// Throws a SnapshotError for the first fault of the description: a bad name or level, a repeated name, a
/// name of something that does not exist, a cycle of superclasses, a value whose size is not that of its
/// elements. Linear in the size of the description. `file` is only for the error.
void checkDescription(const Description& description, const std::string& file);

}  // namespace embedded

namespace embedded::snapshot {

/// What every check needs.
struct CheckContext {
  const Description& description;
  const std::string& file;
  ClassNames classes = {};
  std::unordered_map<std::string_view, const ForeignClassDescription*> foreignClasses = {};
  /// Of each class, by index.
  std::vector<std::vector<std::size_t>> superclasses = {};

  [[noreturn]] void fail(const std::string& code, const JsonPointer& pointer,
                         const std::string& reason) const;
  /// Null when the description has none of that name.
  const ForeignClassDescription* foreignClass(const std::string& name) const;
  /// The index of the class, or an error.
  std::size_t requireClass(const std::string& name, const JsonPointer& pointer,
                           const std::string& role) const;
};

/// A name is not empty and has no NUL.
void checkName(const CheckContext& context, const std::string& name, const JsonPointer& pointer);
/// The class system's names are ASCII too: it hands them out as such, and others would come out as something else.
/// Whether code can write them does not matter: those of real hierarchies hold dashes, and more.
void checkClassSystemName(const CheckContext& context, const std::string& name, const JsonPointer& pointer);
/// Code has made it: it is what code can write.
void checkIdentifier(const CheckContext& context, const std::string& name, const JsonPointer& pointer);
/// Neither is a part of a dotted name empty, and there are not too many of them.
void checkDottedName(const CheckContext& context, const std::string& name, const JsonPointer& pointer);

/// Names, aliases, members. Fills the names of the context.
void checkClassNames(CheckContext& context);
/// Superclasses and access lists. Fills the superclasses of the context.
void checkClassReferences(CheckContext& context);
void checkSuperclassCycles(const CheckContext& context);
void checkPrecedence(const CheckContext& context);
/// The namespaces that names are in, and those that are listed.
void checkNamespaces(const CheckContext& context);
void checkFunctions(const CheckContext& context);
/// Folders, packages, foreign classes, built-ins.
void checkSurroundings(const CheckContext& context);
/// Code is code.
void checkCode(const CheckContext& context);
void checkWorkspace(const CheckContext& context);
/// The finite sets of values of properties, and their validations.
void checkPropertyValues(const CheckContext& context);

}  // namespace embedded::snapshot
