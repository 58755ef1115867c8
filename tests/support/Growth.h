#pragma once

#include <time.h>

#include <algorithm>

/// Seconds that a processor has spent on what the clock counts: on this thread, or on one of pthread_getcpuclockid.
inline double cpuSeconds(clockid_t clock) {
  timespec time = {};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Seconds that a processor spends on an action of this thread; what else the machine does is not counted.
template <class Action>
double cpuSecondsOf(const Action& action) {
  const double begin = cpuSeconds(CLOCK_THREAD_CPUTIME_ID);
  action();
  return cpuSeconds(CLOCK_THREAD_CPUTIME_ID) - begin;
}

/// Is the second action, on eight times as much, of linear time? Then it takes about 8 times as long as the first one on a
/// machine of any speed, and 64 times where the time is quadratic. The best of a few attempts counts.
template <class Small, class Large>
bool isLinear(const Small& small, const Large& large) {
  constexpr double between = 32;
  double least = cpuSecondsOf(small);
  double most = cpuSecondsOf(large);
  for (int again = 0; again < 4 && most >= between * least; ++again) {
    least = std::min(least, cpuSecondsOf(small));
    most = std::min(most, cpuSecondsOf(large));
  }
  return most < between * least;
}
