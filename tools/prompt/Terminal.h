#pragma once

// The terminal: what is typed at it, and how text fits it.

#include <signal.h>

#include <cstddef>
#include <string>

namespace tools::prompt {

/// The size of the terminal that standard output is; 80 x 24 where it does not say.
struct TerminalSize {
  std::size_t columns = 80;
  std::size_t rows = 24;
};
TerminalSize terminalSize();

/// How many columns a terminal needs for a text without control characters. Asks the locale.
std::size_t widthOf(const std::wstring& text);
/// The same of UTF-8.
std::size_t widthOf(const std::string& text);

/// The beginning of a UTF-8 text that fits the width, with an ellipsis when something is cut off.
std::string fitted(const std::string& text, std::size_t width);

/// Less bright than other text, where the terminal can.
std::string dim(const std::string& text);

/// Sees to a character set with all characters, which line editing takes from the locale.
void useUtf8();

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
