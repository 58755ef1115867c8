#pragma once

// What a session consists of before anybody asks it: the model that a description makes.

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/Description.h"
#include "embedded/model/ClassSystem.h"
#include "embedded/model/Routine.h"
#include "embedded/model/Value.h"

/// A function: whose scope names are resolved in.
struct Kfh_KORVAL_fn {
  explicit Kfh_KORVAL_fn(const embedded::FunctionDescription& description);

  std::string name;
  std::string component;
  /// The namespace that its name puts it into; empty: none.
  std::string inNamespace;
  std::vector<std::string> imports;
  std::optional<embedded::ArgumentsDescription> arguments;
  /// Null for a function without code.
  std::shared_ptr<const embedded::Routine> routine;
};

namespace embedded {

/// The functions of the description; of several with one name the first.
class Functions {
 public:
  explicit Functions(const std::vector<FunctionDescription>& functions);

  /// Null when there is none of that name.
  const Kfh_KORVAL_fn* find(const std::string& name) const;

 private:
  std::unordered_map<std::string, Kfh_KORVAL_fn> byName_;
};

/// The variables of a text that runs, or those of the session.
class Workspace {
 public:
  Workspace() = default;
  Workspace(const std::vector<VariableDescription>& variables, const ClassSystem& classes);

  /// Null when there is none of that name.
  ValuePtr find(const std::string& name) const;
  void set(const std::string& name, ValuePtr value);
  /// In the order of their making.
  const std::vector<std::string>& names() const noexcept { return names_; }

 private:
  std::vector<std::string> names_;
  std::unordered_map<std::string, ValuePtr> values_;
};

/// Everything that code and queries look at.
struct World {
  /// Of a description that has been checked.
  explicit World(const Description& description);

  /// Null when there is none of that name.
  const ForeignClassDescription* foreignClass(const std::string& name) const;

  ClassSystem classes;
  Functions functions;
  std::vector<PackageDescription> packages;
  std::vector<ForeignClassDescription> foreignClasses;
  Workspace workspace;
};

}  // namespace embedded
