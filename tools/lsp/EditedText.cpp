#include "tools/lsp/EditedText.h"

#include <algorithm>
#include <iterator>

#include "host/Text.h"

namespace tools::lsp {

namespace {

/// Smaller pieces make edits cheaper and finding dearer.
constexpr std::size_t smallest = 1024;
constexpr std::size_t usual = 4096;
constexpr std::size_t largest = 2 * usual;

using fl::i18n::is_high_surrogate;
using fl::i18n::is_low_surrogate;

/// After the line end at or after the offset; npos when there is none.
std::size_t afterLineEnd(std::u16string_view text, std::size_t from) {
  const std::size_t at = text.find_first_of(u"\r\n", from);
  if (at == std::u16string_view::npos) return at;
  return at + (text.substr(at, 2) == u"\r\n" ? 2 : 1);
}

/// No piece ends between the two.
bool areJoined(char16_t left, char16_t right) {
  return (left == u'\r' && right == u'\n') || (is_high_surrogate(left) && is_low_surrogate(right));
}

/// How many units the character has that begins at the offset.
std::size_t unitsAt(std::u16string_view text, std::size_t at) {
  return is_high_surrogate(text[at]) && at + 1 < text.size() && is_low_surrogate(text[at + 1]) ? 2 : 1;
}

std::size_t bytesOf(char16_t unit, std::size_t units) {
  if (units == 2) return 4;
  return unit < 0x80 ? 1 : (unit < 0x800 ? 2 : 3);
}

std::size_t bytesOf(std::u16string_view text) {
  std::size_t bytes = 0;
  for (std::size_t at = 0, units = 0; at < text.size(); at += units) {
    units = unitsAt(text, at);
    bytes += bytesOf(text[at], units);
  }
  return bytes;
}

}  // namespace

EditedText::EditedText(const std::u16string& text) : pieces_(piecesOf(text)) {
  if (pieces_.empty()) pieces_.emplace_back();
}

std::vector<EditedText::Piece> EditedText::piecesOf(std::u16string_view text) {
  std::vector<Piece> pieces;
  while (!text.empty()) {
    std::size_t length = text.size() > largest ? usual : text.size();
    if (length < text.size() && areJoined(text[length - 1], text[length])) ++length;
    Piece piece{std::u16string(text.substr(0, length))};
    piece.bytes = bytesOf(piece.text);
    char16_t before = 0;
    for (const char16_t unit : piece.text) {
      piece.codeLineEnds += unit == u'\n' ? 1 : 0;
      piece.lineEnds += unit == u'\r' || (unit == u'\n' && before != u'\r') ? 1 : 0;
      before = unit;
    }
    text.remove_prefix(length);
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

template <class IsBefore>
EditedText::Place EditedText::find(IsBefore isBefore) const {
  Place place;
  for (; place.piece + 1 < pieces_.size(); ++place.piece) {
    const Piece& piece = pieces_[place.piece];
    const Place next{place.piece, place.offset + piece.text.size(), place.lines + piece.lineEnds,
                     place.codeLines + piece.codeLineEnds};
    if (!isBefore(next)) break;
    place = next;
  }
  return place;
}

EditedText::Place EditedText::pieceAt(std::size_t offset) const {
  return find([offset](const Place& next) { return next.offset <= offset; });
}

std::size_t EditedText::size() const noexcept {
  std::size_t size = 0;
  for (const Piece& piece : pieces_) size += piece.text.size();
  return size;
}

std::size_t EditedText::lineCount() const noexcept {
  std::size_t count = 1;
  for (const Piece& piece : pieces_) count += piece.lineEnds;
  return count;
}

std::size_t EditedText::lineNumberAt(std::size_t offset) const {
  const Place place = pieceAt(offset);
  const std::u16string& text = pieces_[place.piece].text;
  std::size_t number = place.lines;
  for (std::size_t at = afterLineEnd(text, 0); at <= offset - place.offset && at != std::u16string::npos;
       at = afterLineEnd(text, at))
    ++number;
  return number;
}

std::size_t EditedText::lineStart(std::size_t number) const {
  // The piece that the end of the line before is in: pieces after it may be of the same line.
  const Place place = find([number](const Place& next) { return next.lines < number; });
  const std::u16string& text = pieces_[place.piece].text;
  std::size_t at = 0;
  for (std::size_t line = place.lines; line < number && at != std::u16string::npos; ++line)
    at = afterLineEnd(text, at);
  return place.offset + std::min(at, text.size());
}

std::size_t EditedText::lineEnd(std::size_t number) const {
  const std::size_t start = lineStart(number);
  Place place = pieceAt(start);
  for (std::size_t from = start - place.offset; place.piece < pieces_.size(); from = 0) {
    const Piece& piece = pieces_[place.piece++];
    const std::size_t end =
        piece.lineEnds > 0 ? piece.text.find_first_of(u"\r\n", from) : std::u16string::npos;
    if (end != std::u16string::npos) return place.offset + end;
    place.offset += piece.text.size();
  }
  return place.offset;
}

bool EditedText::isInsidePair(std::size_t offset) const {
  const Place place = pieceAt(offset);
  const std::size_t at = offset - place.offset;
  const std::u16string& text = pieces_[place.piece].text;
  // The halves of a pair are in one piece.
  return at > 0 && at < text.size() && is_high_surrogate(text[at - 1]) && is_low_surrogate(text[at]);
}

std::size_t EditedText::bytesBetween(std::size_t begin, std::size_t end) const {
  std::size_t bytes = 0;
  for (Place place = pieceAt(begin); place.offset < end && place.piece < pieces_.size();) {
    const Piece& piece = pieces_[place.piece++];
    const std::size_t from = begin > place.offset ? begin - place.offset : 0;
    const std::size_t length = std::min(piece.text.size(), end - place.offset) - from;
    bytes += length == piece.text.size() ? piece.bytes
                                         : bytesOf(std::u16string_view(piece.text).substr(from, length));
    place.offset += piece.text.size();
  }
  return bytes;
}

std::size_t EditedText::offsetAfterBytes(std::size_t begin, std::size_t end, std::uint64_t bytes) const {
  Place place = pieceAt(begin);
  std::size_t from = begin - place.offset;
  // Whole pieces have been counted.
  for (; place.piece + 1 < pieces_.size(); ++place.piece, from = 0) {
    const Piece& piece = pieces_[place.piece];
    const std::size_t inPiece =
        from == 0 ? piece.bytes : bytesOf(std::u16string_view(piece.text).substr(from));
    if (inPiece > bytes || place.offset + piece.text.size() > end) break;
    bytes -= inPiece;
    place.offset += piece.text.size();
  }
  const std::u16string_view text = pieces_[place.piece].text;
  const std::size_t last = std::min(text.size(), end - place.offset);
  for (std::size_t units = 0; from < last; from += units) {
    units = unitsAt(text, from);
    const std::size_t inCharacter = bytesOf(text[from], units);
    if (inCharacter > bytes) break;
    bytes -= inCharacter;
  }
  return place.offset + from;
}

bool EditedText::isPlain() const noexcept {
  return std::ranges::all_of(pieces_, [](const Piece& piece) {
    return piece.lineEnds == piece.codeLineEnds && piece.bytes == piece.text.size();
  });
}

std::size_t EditedText::codeLineNumberAt(std::size_t offset) const {
  const Place place = pieceAt(offset);
  const std::u16string_view before =
      std::u16string_view(pieces_[place.piece].text).substr(0, offset - place.offset);
  return place.codeLines + static_cast<std::size_t>(std::ranges::count(before, u'\n'));
}

std::size_t EditedText::codeLineStart(std::size_t number) const {
  // The piece that the end of the line before is in: pieces after it may be of the same line of code.
  const Place place = find([number](const Place& next) { return next.codeLines < number; });
  const std::u16string& text = pieces_[place.piece].text;
  std::size_t at = 0;
  for (std::size_t line = place.codeLines; line < number; ++line) {
    const std::size_t end = text.find(u'\n', at);
    if (end == std::u16string::npos) return place.offset + text.size();
    at = end + 1;
  }
  return place.offset + at;
}

std::u16string EditedText::slice(std::size_t begin, std::size_t end) const {
  Place place = pieceAt(begin);
  std::u16string text;
  while (place.offset < end && place.piece < pieces_.size()) {
    const std::u16string& piece = pieces_[place.piece++].text;
    const std::size_t from = begin > place.offset ? begin - place.offset : 0;
    text.append(piece, from, end - place.offset - from);
    place.offset += piece.size();
  }
  return text;
}

const std::u16string& EditedText::whole() const {
  if (!whole_) whole_ = slice(0, size());
  return *whole_;
}

void EditedText::replace(std::size_t begin, std::size_t end, std::u16string_view text) {
  whole_.reset();
  Place first = pieceAt(begin);
  // The end of the piece before may be joined to what is first now.
  if (first.piece > 0 && begin == first.offset) first.offset -= pieces_[--first.piece].text.size();
  std::size_t after = pieceAt(end).piece + 1;
  std::u16string edited;
  for (std::size_t at = first.piece; at < after; ++at) edited += pieces_[at].text;
  edited.replace(begin - first.offset, end - begin, text);
  while (after < pieces_.size() &&
         (edited.size() < smallest || areJoined(edited.back(), pieces_[after].text.front())))
    edited += pieces_[after++].text;
  std::vector<Piece> pieces = piecesOf(edited);
  // Most edits leave as many pieces as there were: then none of the others moves.
  const std::size_t kept = std::min(pieces.size(), after - first.piece);
  const auto fresh = pieces.begin() + static_cast<std::ptrdiff_t>(kept);
  const auto from =
      std::move(pieces.begin(), fresh, pieces_.begin() + static_cast<std::ptrdiff_t>(first.piece));
  const auto gap = pieces_.erase(from, pieces_.begin() + static_cast<std::ptrdiff_t>(after));
  pieces_.insert(gap, std::make_move_iterator(fresh), std::make_move_iterator(pieces.end()));
  if (pieces_.empty()) pieces_.emplace_back();
}

}  // namespace tools::lsp
