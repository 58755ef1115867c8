#include "tools/prompt/Terminal.h"

#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <sys/select.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <boost/locale/encoding_utf.hpp>
#include <cerrno>
#include <cstdlib>
#include <cwchar>
#include <initializer_list>
#include <string_view>

#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

using boost::locale::conv::utf_to_utf;

std::atomic<bool> resized = false;
std::atomic<bool> resumed = false;

void noteSignal(int signal) { (signal == SIGWINCH ? resized : resumed).store(true); }

/// Holds back the signals that are events, which are let through while it waits and at no other time: so none is lost
/// between a look at what came before and the wait.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGINT, SIGWINCH, SIGCONT}) sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, &before_);
  }
  ~HeldSignals() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  /// False when a signal came.
  bool waitForInput() const {
    fd_set input;
    FD_ZERO(&input);
    FD_SET(STDIN_FILENO, &input);
    return pselect(STDIN_FILENO + 1, &input, nullptr, nullptr, nullptr, &before_) > 0 || errno != EINTR;
  }

 private:
  sigset_t before_;
};

}  // namespace

TerminalSize terminalSize() {
  TerminalSize size;
  winsize told = {};
  // What is not told keeps the usual size: some terminals say 0.
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &told) != 0) return size;
  if (told.ws_col > 0) size.columns = told.ws_col;
  if (told.ws_row > 0) size.rows = told.ws_row;
  return size;
}

std::size_t widthOf(const std::wstring& text) {
  std::size_t width = 0;
  for (const wchar_t character : text) width += static_cast<std::size_t>(std::max(0, wcwidth(character)));
  return width;
}

std::size_t widthOf(const std::string& text) { return widthOf(utf_to_utf<wchar_t>(text)); }

std::string fitted(const std::string& text, std::size_t width) {
  std::wstring wide = utf_to_utf<wchar_t>(text);
  if (widthOf(wide) <= width) return text;
  if (width == 0) return {};
  // One column is for the dots.
  while (widthOf(wide) > width - 1) wide.pop_back();
  return utf_to_utf<char>(wide) + "\u2026";
}

std::string dim(const std::string& text) {
  const char* const terminal = std::getenv("TERM");
  // Such a terminal would show the codes.
  const bool isPlain = terminal == nullptr || std::string_view(terminal) == "dumb";
  return isPlain ? text : "\x1b[2m" + text + "\x1b[0m";
}

void useUtf8() {
  setlocale(LC_CTYPE, "");
  // The user's own locale where it will do, for it knows how wide characters are.
  if (std::string_view(nl_langinfo(CODESET)) != "UTF-8") setlocale(LC_CTYPE, "C.UTF-8");
}

Keyboard::Keyboard() {
  struct sigaction action = {};
  action.sa_handler = noteSignal;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGWINCH, &action, &resizeBefore_);
  sigaction(SIGCONT, &action, &resumeBefore_);
}

Keyboard::~Keyboard() {
  sigaction(SIGWINCH, &resizeBefore_, nullptr);
  sigaction(SIGCONT, &resumeBefore_, nullptr);
}

Keyboard::Event Keyboard::waitForByte(char& byte) {
  const HeldSignals held;
  while (true) {
    // What came before the signals were held back is looked at first, or it would wait for the next key.
    if (takeInterrupt()) return Interrupt;
    if (resized.exchange(false)) return Resized;
    if (resumed.exchange(false)) return Resumed;
    if (!held.waitForInput()) continue;
    const ssize_t count = read(STDIN_FILENO, &byte, 1);
    if (count > 0) return Character;
    if (count == 0 || errno != EINTR) return End;
  }
}

Keyboard::Event Keyboard::next(wchar_t& character) {
  constexpr auto isNone = static_cast<std::size_t>(-1);
  constexpr auto isBeginning = static_cast<std::size_t>(-2);
  std::mbstate_t state = {};
  while (true) {
    char byte = 0;
    const Event event = waitForByte(byte);
    if (event != Character) return event;
    const std::size_t length = std::mbrtowc(&character, &byte, 1, &state);
    // Bytes that are no character are dropped, and the state is not defined after them.
    if (length == isNone) state = {};
    if (length != isNone && length != isBeginning) return Character;
  }
}

}  // namespace tools::prompt
