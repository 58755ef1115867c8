#pragma once

#include <string>

#include "host/Interpreter.h"
#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace code {

/// A session whose code can be tried.
struct World : ::World {
  World() : ::World(worldFile("tests/code/world.json")) {}
  using ::World::World;

  /// What the text prints, followed by "!id line:column" when it fails.
  std::string run(const std::string& text);
  /// What the value of an expression looks like, or the error.
  std::string value(const std::string& expression);
};

}  // namespace code
