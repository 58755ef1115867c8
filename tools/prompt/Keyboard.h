#pragma once

#include <signal.h>

namespace tools::prompt {

/// Reads characters from standard input, with Ctrl-C and a change of the terminal's size as events of their own.
class Keyboard {
 public:
  enum Event { Character, Interrupt, Resized, Resumed, End };

  Keyboard();
  ~Keyboard();
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

  /// Waits for the next one. Bytes that are no character are left out.
  Event next(wchar_t& character);

 private:
  Event waitForByte(char& byte);

  struct sigaction resizeBefore_ = {};
  struct sigaction resumeBefore_ = {};
};

}  // namespace tools::prompt
