#pragma once

// From a line with a request to the answer. Whatever the line holds, there is an answer.

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "embedded/Host.h"
#include "tools/render/Json.h"
#include "tools/session/Alarm.h"

namespace tools::query {

/// Bytes of a line without its end.
inline constexpr std::size_t longestLine = std::size_t{16} << 20;

class Protocol {
 public:
  /// `host` is active and outlives the protocol; `trace`: every answer tells what was asked of the host; `patience`: how
  /// long a request may take, 0 for as long as it takes.
  Protocol(embedded::Host& host, bool trace, std::chrono::milliseconds patience)
      : host_(host), trace_(trace), patience_(patience), alarm_(host) {}

  /// The line that opens the stream.
  std::string opening() const;

  /// Also a line. Requests are counted: one that names the protocol may only be the first.
  std::string answer(const std::string& line);

 private:
  Json answerRequest(const Json& request);
  Json answerInTime(const Json& request, bool first);
  Json agree(const Json& request, bool first) const;
  Json ask(const Json& request);

  embedded::Host& host_;
  const bool trace_;
  const std::chrono::milliseconds patience_;
  Alarm alarm_;
  bool first_ = true;
  /// Of the code that ran last.
  std::optional<embedded::CodeFailure> lastFailure_;
};

}  // namespace tools::query
