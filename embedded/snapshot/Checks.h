#pragma once

// What a description must be, and the parts of checking it.

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/Description.h"
#include "embedded/snapshot/JsonPointer.h"

namespace embedded {

/// Throws a SnapshotError for the first fault of the description: a bad name or level, a repeated name, a
/// name of something that does not exist, a cycle of superclasses, a value whose size is not that of its
/// elements. Linear in the size of the description. `file` is only for the error.
void checkDescription(const Description& description, const std::string& file);

}  // namespace embedded

namespace embedded::snapshot {

/// Which class a name of a description means: the one whose identity it is, else the first one that users know
/// by it, else the one whose alias it is.
class ClassNames {
 public:
  /// The class that has the identity or the alias already.
  std::optional<std::size_t> owner(const std::string& name) const;

  void addIdentity(const std::string& name, std::size_t index) { identities_.emplace(name, index); }
  void addDotted(const std::string& name, std::size_t index) { dotted_.emplace(name, index); }
  void addAlias(const std::string& name, std::size_t index) { aliases_.emplace(name, index); }

  std::optional<std::size_t> find(const std::string& name) const;

 private:
  using Names = std::unordered_map<std::string, std::size_t>;

  static std::optional<std::size_t> findIn(std::initializer_list<const Names*> tables,
                                           const std::string& name);

  Names identities_;
  Names dotted_;
  Names aliases_;
};

/// What every check needs.
struct CheckContext {
  const Description& description;
  const std::string& file;
  ClassNames classes = {};
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
/// Neither has a part of a dotted name.
void checkDottedName(const CheckContext& context, const std::string& name, const JsonPointer& pointer);

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
