#pragma once

// A message of the protocol, and what is wrong with one.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace tools::lsp {

/// Finds the keys of what a client sends in logarithmic time, however many it sends.
using Json = nlohmann::json;

enum class ErrorCode : int {
  ParseError = -32700,
  InvalidRequest = -32600,
  MethodNotFound = -32601,
  InvalidParams = -32602,
  InternalError = -32603,
  ServerNotInitialized = -32002,
  RequestCancelled = -32800
};

/// Why a request has no answer.
struct ResponseError {
  ErrorCode code;
  std::string message;
};

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
