#pragma once

// JSON for programs. Text that JSON can carry is a string, UTF-16 text with lone surrogates is {"utf16": [...]}, its
// code units, and narrow text that is no UTF-8 is {"bytes": [...]}.
//
// Headers know JSON by name only, because reading all of it takes longer than most sources do: the few that look into it
// include <nlohmann/json.hpp>.

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace embedded {
class SnapshotError;
}

namespace tools {

/// Keeps the order in which keys are set.
using Json = nlohmann::ordered_json;

Json jsonOf(const std::u16string& text);
Json jsonOf(const std::string& text);

/// Neither a string nor one of the objects above: no text.
std::optional<std::u16string> wideTextOf(const Json& json);
std::optional<std::string> narrowTextOf(const Json& json);

/// The JSON as one line of UTF-8.
std::string lineOf(const Json& json);

/// What the handler that calls this has caught: its C++ type and its fields.
Json jsonOfCurrentException();
/// The same in one line.
std::string lineOfCurrentException();

/// Code that failed: where, and what it had printed.
struct FailedCode {
  std::string source;
  int line;
  int column;
  std::u16string output;
};

// Why a subcommand has no answer: {"error": {"code": ..., "message": ..., ...}}, as one line.

std::string errorLine(const std::string& code, const std::string& message,
                      const std::optional<FailedCode>& failed = {});
std::string errorLine(const embedded::SnapshotError& error);
std::string errorLineOfCurrentException(const std::string& code, const std::string& message);

// Json.cpp also has the JSON of FrontEnd.h and ClassDescription.h.

}  // namespace tools
