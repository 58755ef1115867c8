#pragma once

// What requests and notifications carry, and what is answered to one that carries something else. What is missing, or of
// another type than the protocol says, throws a ResponseError "invalid params"; null stands for what is not there.
//
// Headers know JSON by name only, because reading all of it takes longer than most sources do.

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
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

/// Why a request has no result.
struct ResponseError {
  ErrorCode code;
  std::string message;
};

/// In what an editor counts the characters of a line.
enum class PositionEncoding { Utf8, Utf16 };

/// Both count from 0.
struct Position {
  std::uint64_t line = 0;
  std::uint64_t character = 0;
};

struct Range {
  Position start;
  Position end;
};

// A pointer is one of JSON: "/textDocument/uri".

/// The value there, or null.
const Json& valueAt(const Json& params, const std::string& pointer);

std::string textAt(const Json& params, const std::string& pointer);
std::u16string wideTextAt(const Json& params, const std::string& pointer);
std::int64_t integerAt(const Json& params, const std::string& pointer);
Position positionAt(const Json& params, const std::string& pointer);
Range rangeAt(const Json& params, const std::string& pointer);

/// Set to true there.
bool flagAt(const Json& params, const std::string& pointer);
/// Is that one of the texts of the list there?
bool listAtHas(const Json& params, const std::string& pointer, const std::string& text);

Json jsonOf(const Range& range);

}  // namespace tools::lsp
