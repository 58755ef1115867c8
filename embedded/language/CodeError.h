#pragma once

#include <memory>
#include <string>
#include <utility>

#include "embedded/Outline.h"
#include "host/Exceptions.h"
#include "syntax/Position.h"

namespace embedded {

using syntax::Position;

/// An error of Korval code, found at a place of it.
class CodeError : public foundation::core::except::Exception {
 public:
  /// `source` names the text that the place is in.
  CodeError(const std::string& id, const std::string& message, std::string source, Position at)
      : Exception(id, message), source_(std::move(source)), at_(at) {}

  std::unique_ptr<IException> clone() const override { return std::make_unique<CodeError>(*this); }
  [[noreturn]] void rethrow() const override { throw CodeError(*this); }

  CodeFailure failure() const { return {messageId(), message(), source_, at_.line, at_.column}; }

 private:
  std::string source_;
  Position at_;
};

}  // namespace embedded
