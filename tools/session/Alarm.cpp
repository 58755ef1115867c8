#include "tools/session/Alarm.h"

#include <signal.h>

#include <utility>

namespace tools {

namespace {

/// Holds back all signals, also for threads that start meanwhile.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t every;
    sigfillset(&every);
    pthread_sigmask(SIG_SETMASK, &every, &before_);
  }
  ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

 private:
  sigset_t before_;
};

/// Signals are for the thread that asks, which may be waiting for one.
template <class Function>
std::thread threadWithoutSignals(Function function) {
  const HeldSignals held;
  return std::thread(function);
}

}  // namespace

Alarm::~Alarm() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void Alarm::set(Time time) {
  {
    const std::lock_guard lock(mutex_);
    hasGoneOff_ = false;
    // Without a thread: it might go off only after a short request has ended.
    if (time <= std::chrono::steady_clock::now()) return goOff();
    time_ = time;
  }
  if (!thread_.joinable()) thread_ = threadWithoutSignals([this] { run(); });
  changed_.notify_one();
}

bool Alarm::stop() noexcept {
  const std::lock_guard lock(mutex_);
  time_.reset();
  return std::exchange(hasGoneOff_, false);
}

void Alarm::run() {
  std::unique_lock lock(mutex_);
  while (!ends_) {
    if (!time_) {
      changed_.wait(lock);
    } else if (const Time time = *time_; std::chrono::steady_clock::now() < time) {
      changed_.wait_until(lock, time);
    } else {
      goOff();
    }
  }
}

void Alarm::goOff() noexcept {
  time_.reset();
  hasGoneOff_ = true;
  // Under the lock, so that an alarm that has been stopped cannot interrupt the next request.
  host_.requestInterrupt();
}

}  // namespace tools
