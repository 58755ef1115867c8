#pragma once

// The process that the command is: how it ends, what version it has, its input, and Ctrl-C.

#include <cstddef>
#include <istream>
#include <string>

#include "embedded/Host.h"

namespace tools {

/// How the command ends.
enum ExitCode : int { Answered = 0, NoAnswer = 1, Usage = 2, Interrupted = 130 };

/// "1.0.0"
std::string version();

/// Reads a line, of which it keeps one character more than `longest`; false at the end of the input.
bool readLine(std::istream& input, std::string& line, std::size_t longest);

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
