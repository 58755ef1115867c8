#pragma once

#include <memory>
#include <string>

#include "embedded/Host.h"
#include "host/Interpreter.h"
#include "tests/support/Text.h"

namespace code {

/// A session whose code can be tried.
class World {
 public:
  explicit World(const std::string& json);
  World();

  /// What the text prints, followed by "!id line:column" when it fails.
  std::string run(const std::u16string& text);
  std::string run(const std::string& text);
  /// What the value of an expression looks like, or the error.
  std::string value(const std::string& expression);

  embedded::Host& host() { return *host_; }

 private:
  std::string failure();

  std::unique_ptr<embedded::Host> host_;
  embedded::Activation active_;
};

/// A file beside these tests.
std::string fixture(const std::string& name);

/// ASCII as UTF-16.
std::u16string wide(const std::string& text);

}  // namespace code
