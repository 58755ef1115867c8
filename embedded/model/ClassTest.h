#pragma once

#include <string_view>

#include "embedded/model/ClassSystem.h"
#include "embedded/model/Value.h"

namespace embedded {

/// Is the value of that class, or of one that derives from it? Also of the kinds "opaque", "java", "tall",
/// "numeric", "float".
bool isOfClass(const ClassSystem& classes, const Value& value, std::string_view className);

}  // namespace embedded
