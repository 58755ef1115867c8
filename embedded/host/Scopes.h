#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/language/CodeFiles.h"
#include "embedded/model/Names.h"
#include "embedded/model/World.h"

namespace embedded {

/// Whose code it is that names are resolved for: a function of the description, a method or getter
/// ("lab.Pump.start"), a code file of the path ("helper", "lab.tool", "Pump.start" in a class folder).
class Scopes {
 public:
  Scopes(const World& world, CodeFiles& files) : world_(world), files_(files) {}

  /// Null when there is none of that name. What is returned lives as long as the host, and is the same each time, until the
  /// file behind it changes.
  const Kfh_KORVAL_fn* find(const std::string& name);

  /// An editor has other code of that name than the host: until the next call that code has these imports, beside those of
  /// the description. Of an empty name there is none. References to the scope that has been opened before end.
  void open(const std::string& name, const std::vector<std::string>& imports);

  /// Throws SnapshotError when the description names a scope that `find` does not. `file` stands in the error.
  void require(const ScopesDescription& described, const std::string& file);

  /// What the description and the code of the scope import, in this order.
  const std::vector<std::string>& importsOf(const Kfh_KORVAL_fn& scope);

  /// What a name means in code of the scope: the first that `find` knows of what an import makes of the name, the name in the
  /// namespace of the code, and the name as it stands. Null when it knows none.
  template <class Find>
  auto meaningIn(const Kfh_KORVAL_fn& scope, const std::string& name, const Find& find) {
    for (const std::string& import : importsOf(scope))
      if (const auto found = find(importedName(import, name)); found != nullptr) return found;
    if (!scope.inNamespace.empty())
      if (const auto found = find(scope.inNamespace + "." + name); found != nullptr) return found;
    return find(name);
  }

 private:
  const Kfh_KORVAL_fn* member(const std::string& name);
  const Kfh_KORVAL_fn* file(const std::string& name);
  const Kfh_KORVAL_fn* scopeOf(const std::string& name, const Routine& routine);

  const World& world_;
  CodeFiles& files_;
  std::unordered_map<const Routine*, std::unique_ptr<const Kfh_KORVAL_fn>> byRoutine_;
  std::unordered_map<std::string, std::unique_ptr<const Kfh_KORVAL_fn>> withoutCode_;
  std::unordered_map<const Kfh_KORVAL_fn*, std::vector<std::string>> imports_;
  std::string openName_;
  std::optional<Kfh_KORVAL_fn> open_;
};

}  // namespace embedded
