#pragma once

// What the client sends: frames of a header that tells the length of the body, an empty line, and the body.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace tools::lsp {

class Inbox;

/// Nothing tells where the next frame begins: nothing more can be read.
struct BrokenStream {
  std::string reason;
};

struct Frame {
  std::string body;
  /// Why the body is none, although the next frame can be found; or empty.
  std::string problem = {};
};

class FrameReader {
 public:
  static constexpr std::size_t longestHeader = std::size_t{8} << 10;
  static constexpr std::uint64_t longestBody = std::uint64_t{64} << 20;
  /// A longer body is not even skipped.
  static constexpr std::uint64_t longestSkipped = std::uint64_t{1} << 30;

  /// Fills a buffer with some bytes and returns how many; 0 at the end of the input.
  using Source = std::function<std::size_t(char* buffer, std::size_t size)>;
  explicit FrameReader(Source source);

  /// The next frame, or nothing where the input ends between two frames. Throws BrokenStream.
  std::optional<Frame> next();

 private:
  struct Header {
    std::optional<std::uint64_t> length;
    std::string problem;
  };

  std::optional<Header> header();
  static void readField(std::string_view line, Header& header);
  /// A line of a header without its end; nothing at the end of the input.
  std::optional<std::string> line(std::size_t longest);
  Frame body(const Header& header);
  bool fill();

  Source source_;
  std::string buffer_;
  std::size_t used_ = 0;
};

/// The body as a frame.
std::string frameOf(const std::string& body);

/// The thread that reads what the client sends. It puts messages into the inbox and cancels requests there; it does
/// nothing else, so that a request can be cancelled while another one is answered.
class Input {
 public:
  /// Reads a file descriptor until it ends, until the client says `exit`, or until this is destroyed.
  Input(int descriptor, Inbox& inbox);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

 private:
  void readAll();
  /// False: nothing more is read.
  bool accept(const std::string& body);
  std::size_t read(char* buffer, std::size_t size) const;

  const int descriptor_;
  Inbox& inbox_;
  int stop_[2] = {-1, -1};  // a pipe: closing the second end ends the reading
  std::thread thread_;
};

}  // namespace tools::lsp
