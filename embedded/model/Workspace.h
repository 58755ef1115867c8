#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/model/Value.h"

namespace embedded {

/// The variables of the current workspace.
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

}  // namespace embedded
