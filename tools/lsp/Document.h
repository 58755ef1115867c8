#pragma once

// A text that an editor has open, and the places in it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tools::lsp {

/// In what an editor counts the characters of a line.
enum class PositionEncoding { Utf8, Utf16 };

/// Both count from 0.
struct Position {
  std::uint64_t line = 0;
  std::uint64_t character = 0;
};

struct Range {
  Position start;
  Position end;
};

/// Offsets are UTF-16 code units. A line ends with "\n", "\r\n" or "\r", as editors see it.
class Document {
 public:
  Document(std::u16string text, PositionEncoding encoding);

  const std::u16string& text() const noexcept { return text_; }
  /// The number of the line that the offset is in, from 0.
  std::size_t lineOf(std::size_t offset) const noexcept;
  std::size_t lineCount() const noexcept { return lineStarts_.size(); }
  /// A line without its end.
  std::u16string_view line(std::size_t number) const;
  std::size_t lineStart(std::size_t number) const { return lineStarts_[number]; }

  /// A position behind the end of a line is that end, and one behind the last line the end of the text. Inside a
  /// character it is the start of the character.
  std::size_t offsetOf(const Position& position) const;
  /// An offset behind the end of the text is that end, one inside the end of a line the end of the line, and one
  /// inside a surrogate pair before it.
  Position positionOf(std::size_t offset) const;
  /// The offset of a place as code counts it: from 1, and lines end with "\n" only.
  std::size_t offsetInCode(int line, int column) const;
  Range rangeOf(std::size_t begin, std::size_t end) const { return {positionOf(begin), positionOf(end)}; }

  void replace(std::u16string text);
  /// The ends of the range may be swapped.
  void replace(const Range& range, std::u16string_view text);

 private:
  void findLines();

  PositionEncoding encoding_;
  std::u16string text_;
  std::vector<std::size_t> lineStarts_;
  std::vector<std::size_t> codeLineStarts_;
};

}  // namespace tools::lsp
