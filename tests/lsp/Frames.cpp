#include "tools/lsp/Input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

using tools::lsp::BrokenStream;
using tools::lsp::Frame;
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
  using Found = std::vector<std::string>;
  const std::string big(200000, 'x');
  const std::vector<std::pair<std::string, Found>> rows{
      {"", {}},
      {frameOf("{}") + frameOf("") + frameOf("\r\n\r\n"), {"{}", "", "\r\n\r\n"}},
      {frameOf(big) + frameOf("b"), {big, "b"}},
      {"Content-Length: 2\n\nab", {"ab"}},
      {"CONTENT-LENGTH:2\r\nA:\r\nContent-Type: x; charset=UTF-8\r\n\r\nab", {"ab"}},
      {"Content-Length: 2\r\nContent-Length: 2\r\n\r\nab", {"ab"}},
      {"what\r\nContent-Length: 2\r\n\r\nab" + frameOf("c"), {"(a line of the header is no field)", "c"}},
      {"Content-Length: 2\r\nContent-Type: a; charset=latin1\r\n\r\nab" + frameOf("c"),
       {"(a message is UTF-8)", "c"}},
      {"Content-Length: 2\r\n\r\na", {"!the input ends inside a message"}},
      {"Content-Length: 2\r\n\r\n", {"!the input ends inside a message"}},
      {"Content-Length: 2\r\n", {"!the input ends inside a header"}},
      {"C", {"!the input ends inside a header"}},
      {frameOf("a") + "\r\n", {"a", "!a header lacks its Content-Length"}},
      {"A: b\r\n\r\n", {"!a header lacks its Content-Length"}},
      {"Content-Length:\r\n\r\n", {"!the header's Content-Length is no length"}},
      {"Content-Length: +2\r\n\r\nab", {"!the header's Content-Length is no length"}},
      {"Content-Length: 2 3\r\n\r\nab", {"!the header's Content-Length is no length"}},
      {"Content-Length: 0x2\r\n\r\nab", {"!the header's Content-Length is no length"}},
      {"Content-Length: 2\r\nContent-Length: 3\r\n\r\nabc", {"!a header has two lengths"}},
      {"Content-Length: 1073741825\r\n\r\n", {"!a message is longer than 1 GiB"}},
      {std::string(9000, 'a'), {"!a header is longer than 8 KiB"}},
      {"Content-Length: 1\r\nA: " + std::string(4000, 'a') + "\r\nB: " + std::string(5000, 'b') + "\r\n\r\nc",
       {"!a header is longer than 8 KiB"}}};
  for (const auto& [text, expected] : rows) {
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, text.size() + 1})
      EXPECT_EQ(framesOf(text, piece), expected) << text.substr(0, 60) << " in pieces of " << piece;
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
