#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/Description.h"
#include "embedded/language/Routine.h"

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
