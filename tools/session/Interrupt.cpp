#include "tools/session/Interrupt.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>

#include "tools/commands/ExitCode.h"

namespace tools {

namespace {

std::atomic<embedded::Host*> interruptible = nullptr;
static_assert(std::atomic<embedded::Host*>::is_always_lock_free);
std::atomic<bool> noted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

void interrupt(int) {
  embedded::Host* host = interruptible.load();
  if (host == nullptr || host->interruptRequested()) _exit(Interrupted);
  host->requestInterrupt();
}

void note(int) {
  noted.store(true);
  if (embedded::Host* host = interruptible.load()) host->requestInterrupt();
}

void handle(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
}

}  // namespace

void handleInterrupts() { handle(interrupt); }

void noteInterrupts() { handle(note); }
bool takeInterrupt() noexcept { return noted.exchange(false); }

Interruptible::Interruptible(embedded::Host& host) noexcept { interruptible.store(&host); }

Interruptible::~Interruptible() { interruptible.store(nullptr); }

}  // namespace tools
