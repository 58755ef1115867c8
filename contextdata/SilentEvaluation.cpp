#include <contextdata/Workspace/Evaluation.h>

#include <boost/smart_ptr/make_shared.hpp>
#include <utility>

#include "host/Interpreter.h"
#include "host/Streams.h"

namespace {

using services::io::KLStream;

/// Keeps a sink on a stream. Taking it away never throws: a stream that fails to flush is still popped.
class PushedSink {
 public:
  PushedSink(KLStream& stream, boost::shared_ptr<klutil::io::KLSink> sink) : stream_(stream) {
    stream_.push(std::move(sink));
  }
  ~PushedSink() {
    try {
      stream_.flush();
    } catch (...) {
    }
    try {
      stream_.pop();
    } catch (...) {
    }
  }
  PushedSink(const PushedSink&) = delete;
  PushedSink& operator=(const PushedSink&) = delete;

 private:
  KLStream& stream_;
};

/// Keeps errors of Korval code quiet. A failure while restoring the mode is ignored.
class SilentErrorMode {
 public:
  SilentErrorMode() : saved_(matrix::getErrorMode()) { matrix::setErrorMode(matrix::ErrorMode::Silent); }
  ~SilentErrorMode() {
    try {
      matrix::getErrorMode();
      matrix::setErrorMode(saved_);
    } catch (...) {
    }
  }
  SilentErrorMode(const SilentErrorMode&) = delete;
  SilentErrorMode& operator=(const SilentErrorMode&) = delete;

 private:
  matrix::ErrorMode saved_;
};

}  // namespace

bool EvalcExpSuccessful(const std::u16string& expression, int nlhs, kxArray_tag** plhs, bool flag) {
  if (!inValidInterpreterAvailable()) return false;
  // One sink for both streams, whose text nobody reads.
  const auto sink = boost::make_shared<services::io::KLStringSink>();
  const PushedSink output(KLStream::KLOut(), sink);
  const PushedSink errors(KLStream::KLErr(), sink);
  const SilentErrorMode mode;
  return inEvalExp(expression, nlhs, plhs, flag, Tamsix::orvo::EvalSource::Query) == 0;
}
