#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/prompt/LiveSession.h"

namespace tools::prompt {

/// What a TAB does to a line, and shows below it.
struct Completed {
  /// What is replaced: from, and up to, UTF-16 code units of the text.
  std::size_t begin = 0;
  std::size_t end = 0;
  /// What stands there already, when nothing more is certain.
  std::u16string insertion = {};
  /// Printable, a line of the terminal each.
  std::vector<std::string> lines = {};
};

class Completer {
 public:
  explicit Completer(LiveSession& live) : live_(live) {}

  /// Of a text with lines that are continued, of which the last one is being typed.
  Completed complete(const std::u16string& text, std::size_t cursor, bool hidden, std::size_t width);

 private:
  LiveSession& live_;
};

}  // namespace tools::prompt
