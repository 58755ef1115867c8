#pragma once

// A text that is edited often: neither an edit nor a line is the more expensive the longer the rest of it is.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tools::lsp {

/// Offsets are UTF-16 code units, lines are counted from 0. A line ends with "\n", "\r\n" or "\r", as editors see it; to
/// code "\r" alone ends none.
class EditedText {
 public:
  explicit EditedText(const std::u16string& text);

  std::size_t size() const noexcept;
  std::size_t lineCount() const noexcept;
  std::size_t lineNumberAt(std::size_t offset) const;
  std::size_t lineStart(std::size_t number) const;
  /// Without its end.
  std::u16string_view line(std::size_t number) const;

  std::size_t codeLineNumberAt(std::size_t offset) const;
  /// The end of the text for a line that is not there.
  std::size_t codeLineStart(std::size_t number) const;

  std::u16string slice(std::size_t begin, std::size_t end) const;
  /// Put together once after each edit, for whoever needs it in one piece.
  const std::u16string& whole() const;

  void replace(std::size_t begin, std::size_t end, std::u16string_view text);

 private:
  /// Whole lines; only the last piece may go on after its last line end.
  struct Piece {
    std::u16string text;
    std::size_t lineEnds = 0;
    std::size_t codeLineEnds = 0;
  };

  /// What comes before a piece.
  struct Place {
    std::size_t piece = 0;
    std::size_t offset = 0;
    std::size_t lines = 0;
    std::size_t codeLines = 0;
  };

  /// The first piece that is not wholly before what is looked for, or the last one.
  template <class IsBefore>
  Place find(IsBefore isBefore) const;
  Place pieceAt(std::size_t offset) const;
  Place pieceOfLine(std::size_t number) const;
  static std::vector<Piece> piecesOf(std::u16string_view text);

  /// Never empty.
  std::vector<Piece> pieces_;
  mutable std::optional<std::u16string> whole_;
};

}  // namespace tools::lsp
