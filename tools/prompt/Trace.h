#pragma once

#include <string>

#include "embedded/Host.h"

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

}  // namespace tools::prompt
