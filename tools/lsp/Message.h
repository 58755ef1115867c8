#pragma once

// A message of the protocol, what it carries, and what is wrong with one.
//
// Headers know JSON by name only, because reading all of it takes longer than most sources do.

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace tools::lsp {

/// Finds the keys of what a client sends in logarithmic time, however many it sends.
using Json = nlohmann::json;

/// Nobody changes it, so copies share it; no pointer stands for null.
using SharedJson = std::shared_ptr<const Json>;

enum class ErrorCode : int {
  ParseError = -32700,
  InvalidRequest = -32600,
  MethodNotFound = -32601,
  InvalidParams = -32602,
  InternalError = -32603,
  ServerNotInitialized = -32002,
  ContentModified = -32801,
  RequestCancelled = -32800
};

/// Why a request has no result.
struct ResponseError {
  ErrorCode code;
  std::string message;
};

/// In what an editor counts the characters of a line.
enum class PositionEncoding { Utf8, Utf16 };

/// A position as the protocol counts: both from 0.
struct ProtocolPosition {
  std::uint64_t line = 0;
  std::uint64_t character = 0;
};

struct Range {
  ProtocolPosition start;
  ProtocolPosition end;
};

/// A body that is no message. The id is null unless it could be read.
struct Rejection {
  SharedJson id;
  ResponseError error;
};

/// A request, or without an id a notification.
struct Message {
  SharedJson id;
  std::string method;
  /// An object or an array, or null; never no pointer.
  SharedJson params;
};

/// Nothing for a client's response to a request. Throws Rejection.
std::optional<Message> readMessage(const std::string& body);

/// Is there an id, and is it that one?
bool isId(const SharedJson& given, const Json& id);

// What params carry. A pointer is one of JSON: "/textDocument/uri". What is missing, or of another type than the protocol
// says, throws a ResponseError "invalid params".

/// The value there, or null for what is missing.
const Json& valueAt(const Json& params, const std::string& pointer);
/// Is there anything but null?
bool hasAt(const Json& params, const std::string& pointer);

std::string textAt(const Json& params, const std::string& pointer);
std::u16string wideTextAt(const Json& params, const std::string& pointer);
std::int64_t integerAt(const Json& params, const std::string& pointer);
ProtocolPosition positionAt(const Json& params, const std::string& pointer);
Range rangeAt(const Json& params, const std::string& pointer);
/// The elements of the list there, which live as long as the params do.
std::vector<const Json*> listAt(const Json& params, const std::string& pointer);

// The same for what a client need not tell: another type counts as missing.

/// Set to true there.
bool flagAt(const Json& params, const std::string& pointer);
/// Is it that text?
bool isTextAt(const Json& params, const std::string& pointer, const std::string& text);
/// Is that one of the texts of the list there?
bool listAtHas(const Json& params, const std::string& pointer, const std::string& text);

Json jsonOf(const Range& range);

// JSON as it is sent. Names of a session need not be UTF-8, and a message must be.

std::string textOf(const Json& json);
/// Of a text, in quotes.
std::string quotedText(const std::string& text);

}  // namespace tools::lsp
