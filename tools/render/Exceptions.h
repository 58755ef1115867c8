#pragma once

#include "tools/render/JsonText.h"

namespace tools {

/// What the handler that calls this has caught: its C++ type and its fields.
Json describeCurrentException();

}  // namespace tools
