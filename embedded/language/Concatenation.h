#pragma once

#include <vector>

#include "embedded/language/Interpreter.h"

namespace embedded {

/// Rows of values side by side, below each other. What is empty says nothing beside what is not.
ValuePtr concatenated(const std::vector<Values>& rows);

}  // namespace embedded
