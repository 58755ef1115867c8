#pragma once

#include <time.h>

#include <algorithm>

/// Seconds that a processor spends on an action of this thread; what else the machine does is not counted.
template <class Action>
double cpuSeconds(const Action& action) {
  const auto now = [] {
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  };
  const double begin = now();
  action();
  return now() - begin;
}

/// How many times longer the second action takes than the first one, each at the best of a few times: a number that is
/// the same on a slow machine. For eight times as much it is about 8 where the time is linear and 64 where it is quadratic.
template <class Small, class Large>
double growth(const Small& small, const Large& large) {
  double least = cpuSeconds(small), most = cpuSeconds(large);
  for (int again = 0; again < 2; ++again) {
    least = std::min(least, cpuSeconds(small));
    most = std::min(most, cpuSeconds(large));
  }
  return most / least;
}

/// What linear work may grow by at most when there is eight times as much of it: half-way to quadratic.
constexpr double linearGrowth = 32;
