#pragma once

#include <string>

#include "host/Exceptions.h"

namespace embedded {

/// A place in a text of code: lines and columns count from 1, columns in UTF-16 code units.
struct Position {
  int line = 1;
  int column = 1;
};

/// An error of Korval code, found at a place of it.
class CodeError : public foundation::core::except::Exception {
 public:
  /// `source` names the text that the place is in.
  CodeError(const std::string& id, const std::string& message, std::string source, Position at)
      : Exception(id, message), source_(std::move(source)), at_(at) {}
  ~CodeError() override;

  std::unique_ptr<IException> clone() const override;
  [[noreturn]] void rethrow() const override;

  const std::string& source() const noexcept { return source_; }
  Position at() const noexcept { return at_; }

 private:
  std::string source_;
  Position at_;
};

}  // namespace embedded
