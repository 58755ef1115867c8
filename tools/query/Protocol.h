#pragma once

// From a line with a request to the answer. Whatever the line holds, there is an answer.

#include <cstddef>
#include <string>

#include "embedded/Host.h"
#include "tools/render/Json.h"

namespace tools::query {

/// Bytes of a line without its end.
inline constexpr std::size_t longestLine = std::size_t{16} << 20;

class Protocol {
 public:
  /// `host` is active and outlives the protocol; `trace`: every answer tells what was asked of the host.
  Protocol(embedded::Host& host, bool trace) : host_(host), trace_(trace) {}

  /// The line that opens the stream.
  std::string opening() const;

  /// Also a line. Requests are counted: one that names the protocol may only be the first.
  std::string answer(const std::string& line);

 private:
  Json answerRequest(const Json& request);
  Json agree(const Json& request, bool first) const;
  Json ask(const Json& request);

  embedded::Host& host_;
  const bool trace_;
  bool first_ = true;
};

}  // namespace tools::query
