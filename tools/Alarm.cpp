#include "tools/Alarm.h"

#include <signal.h>

namespace tools {

namespace {

/// The thread is started with all signals held back: they are for the thread that asks, which may be waiting for one.
template <class Function>
std::thread threadWithoutSignals(Function function) {
  sigset_t every;
  sigset_t before;
  sigfillset(&every);
  pthread_sigmask(SIG_SETMASK, &every, &before);
  std::thread thread(function);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
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
    time_ = time;
    hasGoneOff_ = false;
  }
  if (!thread_.joinable()) thread_ = threadWithoutSignals([this] { run(); });
  changed_.notify_one();
}

bool Alarm::stop() noexcept {
  const std::lock_guard lock(mutex_);
  time_.reset();
  return hasGoneOff_;
}

void Alarm::run() {
  std::unique_lock lock(mutex_);
  while (!ends_) {
    if (!time_) {
      changed_.wait(lock);
    } else if (const Time time = *time_; std::chrono::steady_clock::now() < time) {
      changed_.wait_until(lock, time);
    } else {
      time_.reset();
      hasGoneOff_ = true;
      host_.requestInterrupt();
    }
  }
}

}  // namespace tools
