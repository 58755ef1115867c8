#pragma once

namespace syntax {

/// A line and a column of a text. Both count from 1, columns in UTF-16 code units; a line ends with "\n".
struct Position {
  int line = 1;
  int column = 1;

  bool operator==(const Position&) const = default;
};

}  // namespace syntax
