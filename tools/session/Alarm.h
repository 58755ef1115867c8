#pragma once

// Requests a host's interrupt at a time.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

#include "embedded/Host.h"

namespace tools {

class Alarm {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit Alarm(embedded::Host& host) : host_(host) {}
  ~Alarm();
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;

  /// Starts a thread when it is set for the first time; goes off at once when the time has passed.
  void set(Time time);
  /// Afterwards it does not go off; returns whether it has since it was last set or stopped.
  bool stop() noexcept;

 private:
  void run();
  /// With the mutex locked.
  void goOff() noexcept;

  embedded::Host& host_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<Time> time_;
  bool hasGoneOff_ = false;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace tools
