#pragma once

#include "embedded/language/Parser.h"

namespace embedded {

/// Inside brackets or a block: one level deeper, with rules of its own for blanks and `end`.
class Parser::Nested {
 public:
  Nested(Parser& parser, bool inMatrix, bool inIndex)
      : parser_(parser), inMatrix_(parser.inMatrix_), inIndex_(parser.inIndex_) {
    if (parser.depth_ == parser.nesting_)
      throw CodeError("KORVAL:code:NestingLimit",
                      "The text nests deeper than " + std::to_string(parser.nesting_) + " levels",
                      parser.lexer_.source(), parser.token_.at);
    ++parser.depth_;
    parser.inMatrix_ = inMatrix;
    parser.inIndex_ = inIndex;
  }
  ~Nested() {
    --parser_.depth_;
    restore();
  }
  Nested(const Nested&) = delete;
  Nested& operator=(const Nested&) = delete;

  /// Takes the closing bracket, behind which the outer rules are in force again.
  void close(Symbol closer, const char* expected) const {
    restore();
    parser_.expect(closer, expected);
  }

 private:
  void restore() const {
    parser_.inMatrix_ = inMatrix_;
    parser_.inIndex_ = inIndex_;
  }

  Parser& parser_;
  bool inMatrix_;
  bool inIndex_;
};

}  // namespace embedded
