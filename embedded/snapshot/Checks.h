#pragma once

// The parts of checkDescription().

#include <cstddef>
#include <string>
#include <vector>

#include "embedded/Description.h"
#include "embedded/snapshot/ClassNames.h"
#include "embedded/snapshot/Place.h"

namespace embedded::snapshot {

/// What every check needs.
struct CheckContext {
  const Description& description;
  const std::string& file;
  ClassNames classes = {};
  /// Of each class, by index.
  std::vector<std::vector<std::size_t>> superclasses = {};

  [[noreturn]] void fail(const std::string& code, const Place& place, const std::string& reason) const;
  /// The index of the class, or an error.
  std::size_t requireClass(const std::string& name, const Place& place, const std::string& role) const;
};

/// A name is not empty and has no NUL.
void checkName(const CheckContext& context, const std::string& name, const Place& place);
/// Neither has a part of a dotted name.
void checkDottedName(const CheckContext& context, const std::string& name, const Place& place);

/// An array without a size is a row.
void checkSize(const CheckContext& context, const std::vector<std::size_t>& size, std::size_t count,
               const Place& place);
/// The size of structures without fields, which have no values to hold it against.
void checkBareSize(const CheckContext& context, const std::vector<std::size_t>& size, const Place& place);

/// Names, aliases, members. Fills the names of the context.
void checkClassNames(CheckContext& context);
/// Superclasses and access lists. Fills the superclasses of the context.
void checkClassReferences(CheckContext& context);
void checkSuperclassCycles(const CheckContext& context);
void checkPrecedence(const CheckContext& context);
void checkFunctionsAndScopes(const CheckContext& context);
/// Namespaces, folders, built-ins.
void checkSurroundings(const CheckContext& context);
/// Code is code.
void checkCode(const CheckContext& context);
void checkWorkspace(const CheckContext& context);
/// The finite sets of values of properties, and their validations.
void checkPropertyValues(const CheckContext& context);

}  // namespace embedded::snapshot
