#pragma once

// Text in JSON. What JSON can carry is a string. UTF-16 text with lone surrogates is {"utf16": [...]}, its
// code units; narrow text that is no UTF-8 is {"bytes": [...]}.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace tools {

/// Keeps the order in which keys are set.
using Json = nlohmann::ordered_json;

bool isUtf8(const std::string& text);

Json jsonOf(const std::u16string& text);
Json jsonOf(const std::string& text);

/// Neither a string nor one of the objects above: no text.
std::optional<std::u16string> textOf(const Json& json);
std::optional<std::string> narrowTextOf(const Json& json);

/// The JSON as one line of UTF-8.
std::string lineOf(const Json& json);

/// For people: without lone surrogates and what is no UTF-8, and control characters, which a terminal would obey, replaced.
std::string printable(std::u16string text);
std::string printable(const std::string& text);

}  // namespace tools
