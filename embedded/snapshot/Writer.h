#pragma once

// Where the writer is, and how it fails. The JSON is made by write() of Shape.h.

#include <cstddef>
#include <string>
#include <string_view>

#include "embedded/snapshot/JsonPointer.h"
#include "embedded/snapshot/Limits.h"

namespace embedded::snapshot {

class Writer {
 public:
  /// `file` stands in the errors.
  explicit Writer(std::string file) : file_(std::move(file)) {}

  /// For as long as it lives, the value of that key or at that index is written.
  class Step {
   public:
    template <class KeyOrIndex>
    Step(Writer& writer, KeyOrIndex step) : writer_(writer), outer_(writer.pointer_), here_(*outer_, step) {
      writer_.pointer_ = &here_;
      ++writer_.depth_;
    }
    ~Step() {
      writer_.pointer_ = outer_;
      --writer_.depth_;
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

   private:
    Writer& writer_;
    const JsonPointer* outer_;
    JsonPointer here_;
  };

  /// An object or a list begins; fails where a reader would not follow.
  void begin() const {
    if (depth_ >= deepestLevel)
      fail("snapshot.too-deep", "nested deeper than " + std::to_string(deepestLevel) + " levels");
  }

  /// Throws a SnapshotError with the place that is being written.
  [[noreturn]] void fail(const std::string& code, const std::string& reason) const {
    throw SnapshotError(code, file_, pointer_->text(), reason);
  }

 private:
  std::string file_;
  JsonPointer root_;
  const JsonPointer* pointer_ = &root_;
  std::size_t depth_ = 0;
};

}  // namespace embedded::snapshot
