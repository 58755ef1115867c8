#pragma once

#include <cstddef>
#include <istream>

#include "tools/prompt/LineSource.h"

namespace tools::prompt {

/// Lines of a file or a pipe: nothing is edited, and no prompt is printed.
class PlainLines final : public LineSource {
 public:
  static constexpr std::size_t longestLine = std::size_t{4} << 20;

  explicit PlainLines(std::istream& input) : input_(input) {}
  InputLine next(const std::u16string& before) override;

 private:
  std::istream& input_;
};

}  // namespace tools::prompt
