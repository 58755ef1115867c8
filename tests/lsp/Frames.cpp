#include "tools/lsp/Input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "tests/support/Table.h"

using tools::lsp::BrokenStream;
using tools::lsp::frameOf;
using tools::lsp::FrameReader;

namespace {

/// Gives out a text in pieces of one size.
FrameReader::Source piecesOf(std::string text, std::size_t piece) {
  return [text = std::move(text), piece, used = std::size_t{0}](char* buffer, std::size_t size) mutable {
    const std::size_t count = std::min({piece, size, text.size() - used});
    std::memcpy(buffer, text.data() + used, count);
    used += count;
    return count;
  };
}

/// The bodies, "(problem)" for one that is none, and "!reason" when nothing more can be read.
std::vector<std::string> framesOf(const std::string& text, std::size_t piece) {
  std::vector<std::string> found;
  try {
    FrameReader reader(piecesOf(text, piece));
    while (const auto frame = reader.next())
      found.push_back(frame->problem.empty() ? frame->body : "(" + frame->problem + ")");
  } catch (const BrokenStream& broken) {
    found.push_back("!" + broken.reason);
  }
  return found;
}

TEST(Frames, AreReadInWhateverPiecesTheyCome) {
  EXPECT_TRUE(framesOf("", 1).empty());
  EXPECT_EQ(frameOf("{}"), "Content-Length: 2\r\n\r\n{}");
  for (const Cells& row : rowsOf("tests/lsp/tables.rows", "Frames.AreReadInWhateverPiecesTheyCome")) {
    const std::string& text = row.front();
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, text.size() + 1})
      EXPECT_EQ(framesOf(text, piece), Cells(row.begin() + 1, row.end()))
          << text.substr(0, 60) << " in pieces of " << piece;
  }
}

TEST(Frames, ThatAreTooLongAreSkippedWithoutBeingKept) {
  const std::uint64_t length = FrameReader::longestBody + 1;
  std::string text =
      "Content-Length: " + std::to_string(length) + "\r\n\r\n" + std::string(length, ' ') + frameOf("a");
  const std::vector<std::string> expected{"(a message is longer than 64 MiB)", "a"};
  EXPECT_EQ(framesOf(text, std::size_t{1} << 20), expected);
}

}  // namespace
