#pragma once

// Text in JSON. What JSON can carry is a string. UTF-16 text with lone surrogates is {"utf16": [...]}, its
// code units; narrow text that is no UTF-8 is {"bytes": [...]}.
//
// Headers know JSON by name only, because reading all of it takes longer than most sources do: those that look into it
// include <nlohmann/json.hpp>.

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace tools {

/// Keeps the order in which keys are set.
using Json = nlohmann::ordered_json;

Json jsonOf(const std::u16string& text);
Json jsonOf(const std::string& text);

/// Neither a string nor one of the objects above: no text.
std::optional<std::u16string> textOf(const Json& json);
std::optional<std::string> narrowTextOf(const Json& json);

/// The JSON as one line of UTF-8.
std::string lineOf(const Json& json);

}  // namespace tools
