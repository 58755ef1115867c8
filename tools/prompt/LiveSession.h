#pragma once

#include <chrono>

#include "embedded/Host.h"
#include "frontend/Request.h"
#include "tools/prompt/Trace.h"
#include "tools/session/HostSession.h"

namespace tools::prompt {

/// The session that a prompt works in, and how it asks about it. The host is active.
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
