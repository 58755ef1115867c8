#include "tools/prompt/Keyboard.h"

#include <sys/select.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cwchar>
#include <initializer_list>

#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

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
    if (length == isNone) state = {};
    if (length != isNone && length != isBeginning) return Character;
  }
}

}  // namespace tools::prompt
