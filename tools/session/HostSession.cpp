#include "tools/session/HostSession.h"

#include <boost/shared_ptr.hpp>
#include <utility>

#include "host/Streams.h"
#include "tools/render/Text.h"

namespace tools {

using services::io::KLStream;

namespace {

std::vector<frontend::SessionName> sessionNames(const std::vector<embedded::KnownName>& known) {
  std::vector<frontend::SessionName> names;
  for (const embedded::KnownName& name : known) names.push_back({wide(name.name), name.hidden});
  return names;
}

std::vector<std::u16string> wideNames(const std::vector<std::string>& known) {
  std::vector<std::u16string> names;
  for (const std::string& name : known) names.push_back(wide(name));
  return names;
}

std::u16string textOf(const embedded::CodeFailure& failure) {
  return wide(failure.source + ":" + std::to_string(failure.line) + ":" + std::to_string(failure.column) +
              ": " + failure.message + " [" + failure.id + "]");
}

}  // namespace

/// One sink on both streams for as long as it lives.
class HostSession::Silence {
 public:
  Silence() {
    out_.push(sink_);
    try {
      err_.push(sink_);
    } catch (...) {
      // This object is not complete, so no destructor will do it.
      out_.pop();
      throw;
    }
  }
  ~Silence() {
    // In the reverse order of the pushes.
    remove(err_);
    remove(out_);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

  std::u16string take() {
    flush(err_);
    flush(out_);
    return sink_->take();
  }

 private:
  /// Keeps the beginning of what it gets.
  class KeptOutput final : public klutil::io::KLSink {
   public:
    void write(std::u16string_view text) override { text_ += text.substr(0, mostKept - text_.size()); }
    std::u16string take() { return std::move(text_); }

   private:
    static constexpr std::size_t mostKept = 4096;
    std::u16string text_;
  };

  static void flush(KLStream& stream) {
    try {
      stream.flush();
    } catch (...) {
      // What cannot be delivered is not worth the request's answer.
    }
  }

  static void remove(KLStream& stream) {
    flush(stream);
    try {
      stream.pop();
    } catch (...) {
      // Nobody could do anything about it.
    }
  }

  const boost::shared_ptr<KeptOutput> sink_{new KeptOutput};
  // Asked for at once, so that nothing is asked on the way back.
  KLStream& out_ = KLStream::KLOut();
  KLStream& err_ = KLStream::KLErr();
};

HostSession::HostSession(embedded::Host& host, std::function<void()> begun)
    : host_(host), begun_(std::move(begun)), alarm_(host) {}
HostSession::~HostSession() = default;

void HostSession::beginRequest(frontend::CodePolicy policy, frontend::Deadline deadline) {
  host_.clearInterrupt();
  // What may throw comes first; until it is kept below, the silence ends with this scope.
  auto silence = std::make_unique<Silence>();
  if (deadline) alarm_.set(*deadline);
  silence_ = std::move(silence);
  host_.clearCodeRecord();
  host_.clearFailure();
  const bool isAllowed = policy == frontend::CodePolicy::Allowed;
  host_.setCodePolicy(isAllowed ? embedded::CodePolicy::Allowed : embedded::CodePolicy::Refused);
  if (begun_) begun_();
}

frontend::RequestRecord HostSession::endRequest() noexcept {
  frontend::RequestRecord record;
  // First, so that no alarm goes off from here on; only it knows whose the interrupt is.
  record.timedOut = alarm_.stop();
  record.interrupted = host_.interruptRequested() && !record.timedOut;
  host_.clearInterrupt();
  if (const auto& failure = host_.failure()) {
    record.interrupted = record.interrupted || (failure->isInterrupt && !record.timedOut);
    if (!failure->isInterrupt) record.failure = wide(failure->operation + ": " + failure->message);
  }
  host_.setCodePolicy(embedded::CodePolicy::Allowed);
  const embedded::CodeRecord& code = host_.codeRecord();
  record.codeRuns = code.runs;
  record.codeRefusals = code.refusals;
  record.refused = code.refused;
  if (code.failure) record.codeFailure = textOf(*code.failure);
  record.printed = silence_->take();
  silence_.reset();
  return record;
}

std::vector<std::u16string> HostSession::variableNames() { return wideNames(host_.variableNames()); }

boost::intrusive_ptr<kxArray_tag> HostSession::variable(const std::u16string& name) {
  return host_.variable(narrow(name));
}

std::vector<frontend::SessionName> HostSession::functionNames() {
  return sessionNames(host_.functionNames());
}
std::vector<frontend::SessionName> HostSession::classNames() { return sessionNames(host_.classNames()); }
std::vector<frontend::SessionName> HostSession::namespaceNames() {
  return sessionNames(host_.namespaceNames());
}
std::vector<frontend::SessionName> HostSession::packageNames() { return sessionNames(host_.packageNames()); }
std::vector<std::u16string> HostSession::builtinNames() { return wideNames(embedded::Host::builtinNames()); }

}  // namespace tools
