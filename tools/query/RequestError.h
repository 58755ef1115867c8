#pragma once

#include <string>

namespace tools::query {

/// Why a request cannot be asked. Codes are stable; docs/query.md lists them.
struct RequestError {
  std::string code;
  std::string message;
  /// The argument that is to blame, or nothing.
  std::string argument = {};
};

}  // namespace tools::query
