#include "embedded/snapshot/TextSource.h"

#include <utf8.h>

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace embedded::snapshot {

namespace {

constexpr std::size_t chunkSize = 64U << 10U;
constexpr std::uintmax_t progressStep = 1U << 20U;
constexpr std::size_t longestCharacter = 4;
// And the byte order mark.
constexpr std::string_view whiteSpace = " \t\r\n\xEF\xBB\xBF";

bool isAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

/// Where the text ceases to be UTF-8. Nearly all of it is ASCII, which is passed over eight bytes at a time.
std::size_t endOfUtf8(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    std::uint64_t word = 0;
    if (text.size() - at >= sizeof(word)) {
      std::memcpy(&word, text.data() + at, sizeof(word));
      if ((word & 0x8080808080808080U) == 0) {
        at += sizeof(word);
        continue;
      }
    }
    if (isAscii(text[at])) {
      ++at;
      continue;
    }
    // No character goes beyond an ASCII byte.
    const std::string_view others(text.data() + at, std::ranges::find_if(text.substr(at), isAscii));
    const auto valid =
        static_cast<std::size_t>(utf8::find_invalid(others.begin(), others.end()) - others.begin());
    at += valid;
    if (valid < others.size()) return at;
  }
  return at;
}

}  // namespace

TextSource::TextSource(std::istream& stream, std::string file, std::uintmax_t total,
                       const LoadProgress& progress)
    : stream_(stream), file_(std::move(file)), total_(total), progress_(progress) {}

bool TextSource::hasNoMore() {
  fill();
  exhausted_ = position_ == end_;
  return exhausted_;
}

TextSource::Place TextSource::place() const {
  Place place = before_;
  place.advance(std::string_view(chunk_).substr(0, position_));
  return place;
}

void TextSource::fill() {
  before_.advance(std::string_view(chunk_).substr(0, end_));
  // What is left is the beginning of a character that the chunk before has cut.
  chunk_.erase(0, end_);
  const std::size_t left = chunk_.size();
  chunk_.resize(left + chunkSize);
  stream_.read(chunk_.data() + left, chunkSize);
  if (stream_.bad()) throw SnapshotError("snapshot.unreadable", file_, "", "the file cannot be read");
  const auto count = static_cast<std::size_t>(stream_.gcount());
  chunk_.resize(left + count);
  position_ = 0;
  read_ += count;
  requireUtf8();
  const bool tell = read_ - told_ >= progressStep || (count == 0 && read_ != told_);
  if (!tell || !progress_) return;
  told_ = read_;
  progress_(read_, total_);
}

void TextSource::requireUtf8() {
  end_ = endOfUtf8(chunk_);
  // The last bytes may be the beginning of a character that the next chunk completes.
  const bool moreToCome = !stream_.eof() && chunk_.size() - end_ < longestCharacter;
  if (end_ < chunk_.size() && !moreToCome) refuseBytes(end_);
}

void TextSource::refuseBytes(std::size_t position) {
  // As if it had been read, so that the place is that of the bad byte.
  position_ = position + 1;
  throw SnapshotError("snapshot.not-utf8", file_, "",
                      "line " + std::to_string(line()) + ", column " + std::to_string(column()) +
                          ": the text is not UTF-8, as a snapshot must be");
}

void TextSource::Place::advance(std::string_view text) {
  if (blank) blank = text.find_first_not_of(whiteSpace) == std::string_view::npos;
  while (!text.empty()) {
    // Only the next character is on the next line: the break itself belongs to the one that it ends.
    if (std::exchange(lineEnded, false)) {
      ++line;
      column = 0;
    }
    const std::size_t end = text.find('\n');
    lineEnded = end != std::string_view::npos;
    const std::string_view rest = text.substr(0, lineEnded ? end + 1 : end);
    // Columns count characters, not bytes.
    column += static_cast<std::size_t>(
        std::ranges::count_if(rest, [](char byte) { return (byte & 0xC0) != 0x80; }));
    text.remove_prefix(rest.size());
  }
}

}  // namespace embedded::snapshot
