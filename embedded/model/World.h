#pragma once

// What a session consists of before anybody asks it: the model that a description makes.

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/Description.h"
#include "embedded/model/ClassSystem.h"
#include "embedded/model/Routine.h"
#include "embedded/model/Value.h"

/// A function, a method or a code file: whose scope names are resolved in.
struct Kfh_KORVAL_fn {
  explicit Kfh_KORVAL_fn(const embedded::FunctionDescription& description);
  /// The scope of code that no function of the description has. The routine belongs to the host.
  Kfh_KORVAL_fn(std::string scopeName, const embedded::Routine& code);
  /// That of a method without code.
  Kfh_KORVAL_fn(std::string scopeName, const embedded::Class& definingClass);

  std::string name;
  std::string component;
  /// The namespace that its name puts it into; empty: none.
  std::string inNamespace;
  /// Those of the description; what its code imports besides stands in the code.
  std::vector<std::string> imports;
  /// The class whose method it is, or null.
  const embedded::Class* ownClass = nullptr;
  std::optional<embedded::ArgumentsDescription> arguments;
  /// Null for a function without code.
  std::shared_ptr<const embedded::Routine> routine;
};

namespace embedded {

/// The functions of the description.
class Functions {
 public:
  explicit Functions(const std::vector<FunctionDescription>& functions);
  Functions(const Functions&) = delete;
  Functions& operator=(const Functions&) = delete;

  /// By identity or by dotted name; null when there is none. Of several of one dotted name that of the component comes
  /// first, then one of no component, then the first one declared: as it is with classes.
  const Kfh_KORVAL_fn* findFor(std::string_view component, const std::string& name) const;
  const Kfh_KORVAL_fn* find(const std::string& name) const { return findFor("", name); }

 private:
  std::deque<Kfh_KORVAL_fn> functions_;
  std::unordered_map<std::string, std::vector<const Kfh_KORVAL_fn*>> byName_;
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
