#include "tools/Interrupt.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>

#include "tools/ExitCode.h"

namespace tools {

namespace {

std::atomic<embedded::Host*> interruptible = nullptr;
static_assert(std::atomic<embedded::Host*>::is_always_lock_free);

void interrupt(int) {
  embedded::Host* host = interruptible.load();
  if (host == nullptr || host->interruptRequested()) _exit(Interrupted);
  host->requestInterrupt();
}

}  // namespace

void handleInterrupts() {
  struct sigaction action = {};
  action.sa_handler = interrupt;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
}

Interruptible::Interruptible(embedded::Host& host) noexcept { interruptible.store(&host); }

Interruptible::~Interruptible() { interruptible.store(nullptr); }

}  // namespace tools
