#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tools {

/// Rows of printable cells, all rows with as many, as lines: columns as wide as they need to be and two blanks apart.
/// A column without text takes no place. `indent` blanks stand before each line.
std::string tableOf(const std::vector<std::vector<std::string>>& rows, std::size_t indent = 0);

}  // namespace tools
