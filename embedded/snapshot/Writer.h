#pragma once

// The middle of the writer: where it is, and how it fails. Around it, write() of Shape.h makes JSON of everything that a
// description is made of.

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "embedded/snapshot/Place.h"

namespace embedded::snapshot {

using Json = nlohmann::ordered_json;

class Writer {
 public:
  /// `file` stands in the errors.
  explicit Writer(std::string file) : file_(std::move(file)) {}

  /// For as long as it lives, the value of that key or at that index is written.
  class Step {
   public:
    template <class KeyOrIndex>
    Step(Writer& writer, KeyOrIndex step) : writer_(writer), outer_(writer.place_), here_(*outer_, step) {
      writer_.place_ = &here_;
      ++writer_.depth_;
    }
    ~Step() {
      writer_.place_ = outer_;
      --writer_.depth_;
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

   private:
    Writer& writer_;
    const Place* outer_;
    Place here_;
  };

  /// An object or a list begins; fails where a reader would not follow.
  void begin() const;

  /// Throws a SnapshotError with the place that is being written.
  [[noreturn]] void fail(const std::string& code, const std::string& reason) const;

 private:
  std::string file_;
  Place root_;
  const Place* place_ = &root_;
  std::size_t depth_ = 0;
};

/// Appends a key that the object does not have.
void append(Json& object, std::string key, Json value);

}  // namespace embedded::snapshot
