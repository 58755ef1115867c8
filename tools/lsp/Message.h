#pragma once

// A message of the protocol, and what is wrong with one.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "tools/lsp/Params.h"

namespace tools::lsp {

/// A body that is no message. The id is null unless it could be read.
struct Rejection {
  Json id;
  ResponseError error;
};

/// A request, or without an id a notification.
struct Message {
  std::optional<Json> id;
  std::string method;
  /// An object or an array, or null.
  Json params;
};

/// Nothing for a client's response to a request. Throws Rejection.
std::optional<Message> readMessage(const std::string& body);

}  // namespace tools::lsp
