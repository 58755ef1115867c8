#include "embedded/host/Streams.h"

#include "embedded/host/Session.h"

namespace embedded {

namespace {

constexpr std::size_t longestHeld = 4096;
// Nobody may ever ask for what is kept: a session that prints without end must not fill the memory.
constexpr std::size_t longestKept = 1U << 20U;

}  // namespace

void HostSink::write(OutputKind kind, std::u16string_view text) {
  if (output_) return output_(kind, text);
  kept_ += text.substr(0, longestKept - std::min(longestKept, kept_.size()));
}

void Stream::write(std::u16string_view text) {
  held_ += text;
  if (sinks_.empty() || held_.size() >= longestHeld) deliver();
}

/// Clears the text before it is delivered, so that a sink that fails does not get it again.
void Stream::deliver() {
  const std::u16string text = std::exchange(held_, {});
  if (text.empty()) return;
  if (sinks_.empty()) return host_.write(kind_, text);
  // A copy: what the sink does may pop it.
  const auto top = sinks_.back();
  top->write(text);
}

void Stream::push(boost::shared_ptr<klutil::io::KLSink> sink) {
  enter<Operation::streamPush>();
  deliver();
  // After what was printed before, which is for the sink below.
  sinks_.push_back(std::move(sink));
}

void Stream::flush() {
  enter<Operation::streamFlush>();
  deliver();
}

void Stream::pop() {
  enter<Operation::streamPop>();
  if (sinks_.empty())
    throw foundation::core::except::Exception("KORVAL:host:NoSink", "No sink is left to take away.");
  sinks_.pop_back();
  // What has not been flushed is lost with its sink, and does not reach the one below.
  held_.clear();
}

}  // namespace embedded

namespace klutil::io {

KLSink::~KLSink() = default;

}  // namespace klutil::io

namespace services::io {

KLStringSink::KLStringSink() = default;
KLStringSink::~KLStringSink() = default;
void KLStringSink::write(std::u16string_view text) { text_ += text; }

KLStream::~KLStream() = default;

KLStream& KLStream::KLOut() {
  return embedded::asked<embedded::Operation::streamOut>().answer(
      []() -> KLStream& { return embedded::session().streams.out; });
}

KLStream& KLStream::KLErr() {
  return embedded::asked<embedded::Operation::streamErr>().answer(
      []() -> KLStream& { return embedded::session().streams.error; });
}

}  // namespace services::io
