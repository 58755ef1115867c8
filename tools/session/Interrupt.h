#pragma once

#include "embedded/Host.h"

namespace tools {

/// From now on Ctrl-C (SIGINT) asks the host of the current Interruptible to stop. Where there is none,
/// because the command waits for input or loads a snapshot, and at the second time, the process ends at once
/// with the exit code of an interrupted command.
void handleInterrupts();

/// From now on Ctrl-C never ends the process: it is noted, and asks the host of the current Interruptible to stop.
void noteInterrupts();
/// Whether one has been noted, which is forgotten then.
bool takeInterrupt() noexcept;

/// While it lives, Ctrl-C interrupts this host instead of ending the process.
class Interruptible {
 public:
  explicit Interruptible(embedded::Host& host) noexcept;
  ~Interruptible();
  Interruptible(const Interruptible&) = delete;
  Interruptible& operator=(const Interruptible&) = delete;
};

}  // namespace tools
