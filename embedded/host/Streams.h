#pragma once

#include <array>
#include <boost/smart_ptr/shared_ptr.hpp>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "host/Streams.h"

namespace embedded {

/// What reaches no pushed sink goes to the host's own one, at the bottom.
class HostSink {
 public:
  void setOutput(Output output) { output_ = std::move(output); }
  void write(OutputKind kind, std::u16string_view text);
  std::u16string take() { return std::exchange(kept_, {}); }

 private:
  Output output_;
  std::u16string kept_;  // without an output: the beginning of what was printed
};

class Stream final : public services::io::KLStream {
 public:
  Stream(OutputKind kind, HostSink& host) : kind_(kind), host_(host) {}

  /// The host's own sink has it at once. A pushed one has it when the stream is flushed, another sink is pushed, or
  /// there is much of it.
  void write(std::u16string_view text);
  void push(boost::shared_ptr<klutil::io::KLSink> sink) override;
  void flush() override;
  /// What was not flushed is lost with its sink: it is not for the one below.
  void pop() override;

 private:
  void deliver();

  OutputKind kind_;
  HostSink& host_;
  std::vector<boost::shared_ptr<klutil::io::KLSink>> sinks_;
  std::u16string held_;
};

/// The two streams of a session.
struct Streams {
  HostSink host;
  Stream out{OutputKind::Output, host};
  Stream error{OutputKind::Error, host};
};

}  // namespace embedded
