#pragma once

// The session that a prompt works in, and how it asks about it.

#include <chrono>
#include <string>

#include "embedded/Host.h"
#include "frontend/Request.h"
#include "tools/session/HostSession.h"

namespace tools::prompt {

/// What requests ask of the host, for as long as somebody wants to know.
class Trace {
 public:
  explicit Trace(embedded::Host& host) : host_(host) {}

  void turn(bool on) noexcept { isOn_ = on; }
  bool isOn() const noexcept { return isOn_; }

  /// A request begins.
  void begin();
  /// It has ended: what it has asked, whole lines; nothing when the trace is off.
  std::string end();

 private:
  embedded::Host& host_;
  bool isOn_ = false;
};

/// The host is active.
struct LiveSession {
  explicit LiveSession(embedded::Host& host) : host(host), session(host), trace(host) {}

  frontend::Options options(bool hidden = false) const {
    frontend::Deadline deadline;
    if (patience.count() > 0) deadline = std::chrono::steady_clock::now() + patience;
    return {policy, deadline, mostCandidates, hidden};
  }

  embedded::Host& host;
  HostSession session;
  Trace trace;
  frontend::CodePolicy policy = frontend::CodePolicy::StoredValues;
  /// How long an answer may take that somebody waits for in the middle of a line; 0: as long as it takes.
  std::chrono::milliseconds patience{300};
  std::size_t mostCandidates = 200;
};

}  // namespace tools::prompt
