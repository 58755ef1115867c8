#pragma once

#include <string>

#include "tools/Text.h"

namespace tools::query {

/// The JSON object of a line. Throws RequestError: not JSON, not an object, a repeated key.
Json parseRequest(const std::string& line);

}  // namespace tools::query
