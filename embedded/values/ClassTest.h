#pragma once

#include <string_view>

#include "embedded/classes/ClassSystem.h"
#include "embedded/values/Value.h"

namespace embedded {

/// Is the value of that class, or of one that derives from it? Also of the kinds "opaque", "java", "tall",
/// "numeric", "float".
bool isOfClass(const ClassSystem& classes, const Value& value, std::string_view className);

}  // namespace embedded
