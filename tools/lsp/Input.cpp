#include "tools/lsp/Input.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <cerrno>
#include <charconv>
#include <system_error>
#include <utility>

#include "tools/lsp/Inbox.h"

namespace tools::lsp {

namespace {

constexpr std::size_t chunk = std::size_t{64} << 10;

std::uint64_t lengthOf(const std::string& digits) {
  std::uint64_t length = 0;
  const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), length);
  if (failure != std::errc() || end != digits.data() + digits.size()) {
    throw BrokenStream{"the header's Content-Length is no length"};
  }
  return length;
}

/// "application/vscode-jsonrpc; charset=utf-8". Some clients write "utf8".
bool isUtf8Type(const std::string& type) {
  const std::size_t charset = type.find("charset=");
  return charset == std::string::npos || type.substr(charset).starts_with("charset=utf-8") ||
         type.substr(charset).starts_with("charset=utf8");
}

}  // namespace

FrameReader::FrameReader(Source source) : source_(std::move(source)) {}

bool FrameReader::fill() {
  buffer_.resize(chunk);
  used_ = 0;
  buffer_.resize(source_(buffer_.data(), buffer_.size()));
  return !buffer_.empty();
}

std::optional<std::string> FrameReader::line(std::size_t longest) {
  std::string text;
  while (used_ < buffer_.size() || fill()) {
    const char character = buffer_[used_++];
    if (character == '\n') {
      if (text.ends_with('\r')) text.pop_back();
      return text;
    }
    // Or input without a line end would be read until the memory is full.
    if (text.size() == longest) throw BrokenStream{"a header is longer than 8 KiB"};
    text += character;
  }
  if (text.empty()) return {};
  throw BrokenStream{"the input ends inside a header"};
}

void FrameReader::readField(std::string_view line, Header& header) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) {
    header.problem = "a line of the header is no field";
    return;
  }
  const std::string name = boost::to_lower_copy(std::string(line.substr(0, colon)));
  const std::string value = boost::trim_copy(std::string(line.substr(colon + 1)));
  if (name == "content-length") {
    const std::uint64_t length = lengthOf(value);
    if (header.length && *header.length != length) throw BrokenStream{"a header has two lengths"};
    header.length = length;
  } else if (name == "content-type" && !isUtf8Type(boost::to_lower_copy(value))) {
    header.problem = "a message is UTF-8";
  }
}

std::optional<FrameReader::Header> FrameReader::header() {
  Header header;
  std::optional<std::string> field = line(longestHeader);
  if (!field) return {};
  std::size_t size = 0;
  while (!field->empty()) {
    size += field->size();
    readField(*field, header);
    field = line(longestHeader - size);
    if (!field) throw BrokenStream{"the input ends inside a header"};
  }
  // Nobody knows where the next message begins, so this is the end.
  if (!header.length) throw BrokenStream{"a header lacks its Content-Length"};
  // Nobody waits until that has been skipped.
  if (*header.length > longestSkipped) throw BrokenStream{"a message is longer than 1 GiB"};
  if (*header.length > longestBody) header.problem = "a message is longer than 64 MiB";
  return header;
}

Frame FrameReader::body(const Header& header) {
  Frame frame{{}, header.problem};
  for (std::uint64_t left = *header.length; left > 0;) {
    if (used_ == buffer_.size() && !fill()) throw BrokenStream{"the input ends inside a message"};
    const std::size_t part = std::min<std::uint64_t>(left, buffer_.size() - used_);
    // The body of a message that is refused is skipped, and so the next one is found.
    if (frame.problem.empty()) frame.body.append(buffer_, used_, part);
    used_ += part;
    left -= part;
  }
  return frame;
}

std::optional<Frame> FrameReader::next() {
  const auto found = header();
  if (!found) return {};
  return body(*found);
}

std::string frameOf(const std::string& body) {
  return "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

Input::Input(int descriptor, Inbox& inbox) : descriptor_(descriptor), inbox_(inbox) {
  if (pipe(stop_) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  thread_ = std::thread([this] { readAll(); });
}

Input::~Input() {
  close(stop_[1]);  // which the other end sees
  inbox_.close();   // or the thread might wait for room
  thread_.join();
  close(stop_[0]);
}

std::size_t Input::read(char* buffer, std::size_t size) const {
  pollfd ready[] = {{descriptor_, POLLIN, 0}, {stop_[0], POLLIN, 0}};
  // A read alone could not be told to stop.
  while (poll(ready, 2, -1) < 0 && errno == EINTR) continue;
  if (ready[1].revents != 0) return 0;
  ssize_t count = 0;
  do count = ::read(descriptor_, buffer, size);
  while (count < 0 && errno == EINTR);
  return count < 0 ? 0 : static_cast<std::size_t>(count);  // an input that fails has ended
}

void Input::readAll() {
  FrameReader frames([this](char* buffer, std::size_t size) { return read(buffer, size); });
  try {
    while (const auto frame = frames.next()) {
      if (!frame->problem.empty()) {
        inbox_.put(Rejection{{}, {ErrorCode::InvalidRequest, frame->problem}});
      } else if (!accept(frame->body)) {
        return;
      }
    }
    inbox_.put(InputEnded{});
  } catch (const BrokenStream& broken) {
    inbox_.put(Rejection{{}, {ErrorCode::ParseError, broken.reason}});
    inbox_.put(InputEnded{broken.reason});
  }
}

bool Input::accept(const std::string& body) {
  try {
    auto message = readMessage(body);
    if (!message) return true;
    const bool isNotification = !message->id;
    // Not put into the inbox: what it cancels may be what the other thread is working on.
    if (isNotification && message->method == "$/cancelRequest") {
      inbox_.cancel(valueAt(*message->params, "/id"));
      return true;
    }
    // Nothing is read after it: the process ends.
    const bool isLast = isNotification && message->method == "exit";
    inbox_.put(std::move(*message), body.size());
    return !isLast;
  } catch (Rejection& rejection) {
    inbox_.put(std::move(rejection));
    return true;
  }
}

}  // namespace tools::lsp
