#pragma once

#include <string>

#include "tools/render/JsonText.h"

namespace tools::query {

/// The JSON object of a line. Throws RequestError: not JSON, not an object, a repeated key.
Json parseRequest(const std::string& line);

}  // namespace tools::query
