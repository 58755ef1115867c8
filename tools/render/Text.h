#pragma once

// Text as people and terminals get it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "frontend/Text.h"

namespace embedded {
class SnapshotError;
}

namespace tools {

bool isUtf8(const std::string& text);

using frontend::narrow;
using frontend::wide;

/// UTF-8 without what cannot be converted, and with control characters, which a terminal would obey, replaced.
std::string printable(std::u16string text);
std::string printable(const std::string& text);
/// The same of what may be several lines, which keep their ends and tabs: what code prints, and messages of it.
std::string printableLines(std::u16string text);

/// Why a snapshot cannot be loaded: "FILE: POINTER: reason [code]", without what is empty.
std::string messageOf(const embedded::SnapshotError& error);

/// The texts in UTF-8, with the separator between them.
std::string joined(const std::vector<std::u16string>& texts, const std::string& separator);
/// "on, off". It never begins with a comma: empty texts before the others are left out.
std::string listed(const std::vector<std::u16string>& texts);

/// "public", "protected", ..., or the number of a level that only the host knows.
std::string accessWord(std::int32_t level);

/// Rows of printable cells, all rows with as many, as lines: columns as wide as they need to be and two blanks apart.
/// A column without text takes no place. `indent` blanks stand before each line.
std::string tableOf(const std::vector<std::vector<std::string>>& rows, std::size_t indent = 0);

}  // namespace tools
