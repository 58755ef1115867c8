#pragma once

// What requests and notifications carry. What is missing or of another type than the protocol says throws a
// ResponseError "invalid params"; null stands for what is not there.

#include <cstdint>
#include <optional>
#include <string>

#include "tools/lsp/Document.h"
#include "tools/lsp/Message.h"

namespace tools::lsp {

using Path = Json::json_pointer;

/// The value there, or null.
const Json& valueAt(const Json& params, const Path& path);

std::string textAt(const Json& params, const Path& path);
std::u16string wideTextAt(const Json& params, const Path& path);
std::int64_t integerAt(const Json& params, const Path& path);
Position positionAt(const Json& params, const Path& path);
Range rangeAt(const Json& params, const Path& path);

/// Set to true there.
bool flagAt(const Json& params, const Path& path);
/// Is that one of the texts of the list there?
bool listAtHas(const Json& params, const Path& path, const std::string& text);

Json jsonOf(const Position& position);
Json jsonOf(const Range& range);
/// UTF-8, with replacement characters for halves of surrogate pairs.
std::string utf8Of(std::u16string_view text);

}  // namespace tools::lsp
