#pragma once

#include <string>
#include <vector>

#include "embedded/Description.h"

/// A function: whose scope names are resolved in.
struct Kfh_KORVAL_fn {
  explicit Kfh_KORVAL_fn(const embedded::FunctionDescription& description);

  std::string name;
  std::string component;
  /// The namespace that its name puts it into; empty: none.
  std::string inNamespace;
  std::vector<std::string> imports;
};
