#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <iterator>
#include <string>
#include <string_view>

#include "embedded/Snapshot.h"

namespace embedded::snapshot {

/// The text of a snapshot, byte by byte from a stream: checks that it is UTF-8, knows the position, and tells
/// the progress. What it does for each byte decides how fast snapshots load, so that places are counted when somebody
/// asks for them, and when a chunk has been read to its end.
class TextSource {
 public:
  TextSource(std::istream& stream, std::string file, std::uintmax_t total, const LoadProgress& progress);

  const std::string& file() const { return file_; }
  /// How many bytes there are, read and unread ones.
  std::uintmax_t total() const { return total_; }
  /// The position of the byte that was read last, counted from 1; columns count characters.
  std::size_t line() const { return place().line; }
  std::size_t column() const { return place().column; }
  /// So far there was nothing but white space.
  bool blank() const { return place().blank; }
  /// Somebody tried to read on after the end.
  bool exhausted() const { return exhausted_; }

  char current() const { return chunk_[position_]; }
  void advance() { ++position_; }
  bool atEnd() {
    if (position_ < end_) return false;
    return hasNoMore();
  }

 private:
  /// Of the byte that was read last.
  struct Place {
    std::size_t line = 1;
    std::size_t column = 0;
    bool lineEnded = false;
    bool blank = true;

    void advance(std::string_view text);
  };

  bool hasNoMore();
  void fill();
  void requireUtf8();
  [[noreturn]] void refuseBytes(std::size_t position);
  Place place() const;

  std::istream& stream_;
  std::string file_;
  std::uintmax_t total_;
  const LoadProgress& progress_;
  std::uintmax_t read_ = 0;
  std::uintmax_t told_ = 0;
  std::string chunk_;
  /// How much of the chunk is checked; after it stands the beginning of a character.
  std::size_t end_ = 0;
  std::size_t position_ = 0;
  /// At the beginning of the chunk.
  Place before_;
  bool exhausted_ = false;
};

/// The input iterator over a source; without one it is the end.
class TextIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = char;

  TextIterator() = default;
  explicit TextIterator(TextSource& source) : source_(&source) {}

  char operator*() const { return source_->current(); }
  TextIterator& operator++() {
    source_->advance();
    return *this;
  }
  void operator++(int) { source_->advance(); }
  bool operator==(const TextIterator& other) const { return ended() == other.ended(); }

 private:
  bool ended() const { return source_ == nullptr || source_->atEnd(); }

  TextSource* source_ = nullptr;
};

}  // namespace embedded::snapshot
