#include "tools/Alarm.h"

#include <utility>

namespace tools {

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
    if (time <= std::chrono::steady_clock::now()) return goOff();
    time_ = time;
  }
  if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
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
  host_.requestInterrupt();
}

}  // namespace tools
