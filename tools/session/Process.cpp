#include "tools/session/Process.h"

#include <contextdata/Version.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>

namespace tools {

namespace {

std::atomic<embedded::Host*> interruptible = nullptr;
static_assert(std::atomic<embedded::Host*>::is_always_lock_free);
std::atomic<bool> noted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

// Both handlers call only what a signal handler may.
void interrupt(int) {
  embedded::Host* host = interruptible.load();
  // The second Ctrl-C ends a process that has not heard the first. _exit, because destructors must not run
  // here.
  if (host == nullptr || host->interruptRequested()) _exit(Interrupted);
  host->requestInterrupt();
}

void note(int) {
  // First, so that whoever makes a host interruptible now still learns of it.
  noted.store(true);
  if (embedded::Host* host = interruptible.load()) host->requestInterrupt();
}

void handle(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  // Reading a line goes on; it is the host that is to notice.
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
}

}  // namespace

std::string version() {
  return std::to_string(CONTEXTDATA_VERSION_MAJOR) + "." + std::to_string(CONTEXTDATA_VERSION_MINOR) + "." +
         std::to_string(CONTEXTDATA_VERSION_PATCH);
}

bool readLine(std::istream& input, std::string& line, std::size_t longest) {
  line.clear();
  // The buffer is read itself: a line of any length is skipped without being kept.
  std::streambuf& buffer = *input.rdbuf();
  int character = buffer.sbumpc();
  if (character == EOF) return false;
  for (; character != '\n' && character != EOF; character = buffer.sbumpc()) {
    // One character more than is allowed tells the caller that the line is too long.
    if (line.size() <= longest) line.push_back(static_cast<char>(character));
  }
  return true;
}

void handleInterrupts() { handle(interrupt); }

void noteInterrupts() { handle(note); }
bool takeInterrupt() noexcept { return noted.exchange(false); }

Interruptible::Interruptible(embedded::Host& host) noexcept { interruptible.store(&host); }

Interruptible::~Interruptible() { interruptible.store(nullptr); }

}  // namespace tools
