#pragma once

// Text as people and terminals get it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace embedded {
class SnapshotError;
}

namespace tools {

bool isUtf8(const std::string& text);

/// From UTF-8 to UTF-16 and back; what cannot be converted is left out.
std::u16string wide(std::string_view text);
std::string narrow(std::u16string_view text);

/// UTF-8 without what cannot be converted, and with control characters, which a terminal would obey, replaced.
std::string printable(std::u16string text);
std::string printable(const std::string& text);

/// Why a snapshot cannot be loaded: "FILE: POINTER: reason [code]", without what is empty.
std::string messageOf(const embedded::SnapshotError& error);

/// "public", "protected", ..., or the number of a level that only the host knows.
std::string accessWord(std::int32_t level);

/// Rows of printable cells, all rows with as many, as lines: columns as wide as they need to be and two blanks apart.
/// A column without text takes no place. `indent` blanks stand before each line.
std::string tableOf(const std::vector<std::vector<std::string>>& rows, std::size_t indent = 0);

}  // namespace tools
