#include "embedded/snapshot/TextSource.h"

#include <utf8.h>

#include <string_view>

namespace embedded::snapshot {

namespace {

constexpr std::size_t chunkSize = 64U << 10U;
constexpr std::uintmax_t progressStep = 1U << 20U;
constexpr std::size_t longestCharacter = 4;
// And the byte order mark.
constexpr std::string_view whiteSpace = " \t\r\n\xEF\xBB\xBF";

}  // namespace

TextSource::TextSource(std::istream& stream, std::string file, std::uintmax_t total,
                       const LoadProgress& progress)
    : stream_(stream), file_(std::move(file)), total_(total), progress_(progress) {}

void TextSource::advance() {
  count(chunk_[position_]);
  ++position_;
}

bool TextSource::atEnd() {
  if (position_ == end_) fill();
  exhausted_ = position_ == end_;
  return exhausted_;
}

void TextSource::fill() {
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
  end_ = static_cast<std::size_t>(utf8::find_invalid(chunk_.begin(), chunk_.end()) - chunk_.begin());
  // The last bytes may be the beginning of a character that the next chunk completes.
  const bool moreToCome = !stream_.eof() && chunk_.size() - end_ < longestCharacter;
  if (end_ < chunk_.size() && !moreToCome) refuseBytes(end_);
}

void TextSource::refuseBytes(std::size_t position) {
  // As if it had been read, so that the place is that of the bad byte.
  for (std::size_t at = 0; at <= position; ++at) count(chunk_[at]);
  throw SnapshotError("snapshot.not-utf8", file_, "",
                      "line " + std::to_string(line_) + ", column " + std::to_string(column_) +
                          ": the text is not UTF-8, as a snapshot must be");
}

void TextSource::count(char byte) {
  // Only the next character is on the next line: the break itself belongs to the one that it ends.
  if (lineEnded_) {
    ++line_;
    column_ = 0;
  }
  blank_ = blank_ && whiteSpace.find(byte) != std::string_view::npos;
  lineEnded_ = byte == '\n';
  // Columns count characters, not bytes.
  const bool continues = (byte & 0xC0) == 0x80;
  if (!continues) ++column_;
}

}  // namespace embedded::snapshot
