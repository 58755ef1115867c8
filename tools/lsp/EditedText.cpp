#include "tools/lsp/EditedText.h"

#include <algorithm>
#include <iterator>

namespace tools::lsp {

namespace {

/// Smaller ones make edits cheaper and finding dearer.
constexpr std::size_t smallest = 1024;
constexpr std::size_t usual = 4096;

/// After the line end at or after the offset; npos when there is none.
std::size_t afterLineEnd(std::u16string_view text, std::size_t from) {
  const std::size_t at = text.find_first_of(u"\r\n", from);
  if (at == std::u16string_view::npos) return at;
  return at + (text.substr(at, 2) == u"\r\n" ? 2 : 1);
}

bool endsLine(std::u16string_view text) { return text.ends_with(u'\n') || text.ends_with(u'\r'); }

}  // namespace

EditedText::EditedText(const std::u16string& text) : pieces_(piecesOf(text)) {
  if (pieces_.empty()) pieces_.emplace_back();
}

std::vector<EditedText::Piece> EditedText::piecesOf(std::u16string_view text) {
  std::vector<Piece> pieces;
  while (!text.empty()) {
    const std::size_t end = text.size() > usual ? afterLineEnd(text, usual) : std::u16string_view::npos;
    Piece piece{std::u16string(text.substr(0, end))};
    for (std::size_t at = afterLineEnd(piece.text, 0); at != std::u16string::npos;
         at = afterLineEnd(piece.text, at)) {
      ++piece.lineEnds;
      piece.codeLineEnds += piece.text[at - 1] == u'\n' ? 1 : 0;
    }
    text.remove_prefix(piece.text.size());
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

EditedText::Place EditedText::pieceOfLine(std::size_t number) const {
  return find([number](const Place& next) { return next.lines <= number; });
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
  const Place place = pieceOfLine(number);
  std::size_t at = 0;
  for (std::size_t line = place.lines; line < number; ++line)
    at = afterLineEnd(pieces_[place.piece].text, at);
  return place.offset + at;
}

std::u16string_view EditedText::line(std::size_t number) const {
  const Place place = pieceOfLine(number);
  const std::u16string_view text = pieces_[place.piece].text;
  const std::size_t start = lineStart(number) - place.offset;
  return text.substr(start, text.find_first_of(u"\r\n", start) - start);
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
  // What becomes of "\r" depends on what comes after it.
  if (first.piece > 0 && pieces_[first.piece - 1].text.ends_with(u'\r'))
    first.offset -= pieces_[--first.piece].text.size();
  std::size_t after = pieceAt(end).piece + 1;
  std::u16string edited;
  for (std::size_t at = first.piece; at < after; ++at) edited += pieces_[at].text;
  edited.replace(begin - first.offset, end - begin, text);
  while (after < pieces_.size() && (!endsLine(edited) || edited.ends_with(u'\r') || edited.size() < smallest))
    edited += pieces_[after++].text;
  std::vector<Piece> pieces = piecesOf(edited);
  const auto from = pieces_.begin() + static_cast<std::ptrdiff_t>(first.piece);
  const auto gap = pieces_.erase(from, pieces_.begin() + static_cast<std::ptrdiff_t>(after));
  pieces_.insert(gap, std::make_move_iterator(pieces.begin()), std::make_move_iterator(pieces.end()));
  if (pieces_.empty()) pieces_.emplace_back();
}

}  // namespace tools::lsp
