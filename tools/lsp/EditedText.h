#pragma once

// A text that is edited often: an edit costs the same however long it is, and however long its lines are.

#include <cstddef>
#include <cstdint>
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
  /// The end of the text for a line that is not there.
  std::size_t lineStart(std::size_t number) const;
  /// Where what ends the line begins.
  std::size_t lineEnd(std::size_t number) const;

  /// Do code and editors see the same lines, and has the text nothing but ASCII?
  bool isPlain() const noexcept;
  std::size_t codeLineNumberAt(std::size_t offset) const;
  /// The end of the text for a line that is not there.
  std::size_t codeLineStart(std::size_t number) const;

  /// Between the halves of a surrogate pair.
  bool isInsidePair(std::size_t offset) const;
  /// How many bytes a part has in UTF-8; each half of a pair that is alone counts as a character of its own.
  std::size_t bytesBetween(std::size_t begin, std::size_t end) const;
  /// After as many bytes of the part, or before the character that they end in.
  std::size_t offsetAfterBytes(std::size_t begin, std::size_t end, std::uint64_t bytes) const;

  std::u16string slice(std::size_t begin, std::size_t end) const;
  /// Put together once after each edit, for whoever needs it in one piece.
  const std::u16string& whole() const;

  void replace(std::size_t begin, std::size_t end, std::u16string_view text);

 private:
  /// Cut anywhere but inside "\r\n" and surrogate pairs, so that a long line is several pieces, too.
  struct Piece {
    std::u16string text;
    std::size_t lineEnds = 0;
    std::size_t codeLineEnds = 0;
    /// In UTF-8.
    std::size_t bytes = 0;
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
  static std::vector<Piece> piecesOf(std::u16string_view text);

  /// Never empty.
  std::vector<Piece> pieces_;
  mutable std::optional<std::u16string> whole_;
};

}  // namespace tools::lsp
