#include "tools/session/Snapshot.h"

#include <unistd.h>

#include <chrono>
#include <iostream>

namespace tools {

namespace {

using Clock = std::chrono::steady_clock;

/// A bar on standard error, shown once loading has taken a second, and taken away at the end.
class ProgressBar {
 public:
  ProgressBar() = default;
  ~ProgressBar() {
    // Also when loading fails, so that the error has a line of its own.
    if (shown_ >= 0) std::cerr << "\r\x1b[K" << std::flush;
  }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void show(std::uintmax_t read, std::uintmax_t total) {
    if (total == 0 || Clock::now() - start_ < std::chrono::seconds(1)) return;
    const int percent = static_cast<int>(100.0 * static_cast<double>(read) / static_cast<double>(total));
    if (percent == shown_) return;
    shown_ = percent;
    const std::string done(static_cast<std::size_t>(percent) * width / 100, '#');
    std::cerr << "\rloading [" << done << std::string(width - done.size(), ' ') << "] " << percent << " %"
              << std::flush;
  }

 private:
  static constexpr std::size_t width = 40;
  const Clock::time_point start_ = Clock::now();
  int shown_ = -1;
};

}  // namespace

std::unique_ptr<embedded::Host> loadSnapshot(const std::string& file) {
  // A bar in a log file is of use to nobody.
  if (isatty(STDERR_FILENO) == 0) return embedded::Host::load(file);
  ProgressBar bar;
  return embedded::Host::load(file,
                              [&](std::uintmax_t read, std::uintmax_t total) { bar.show(read, total); });
}

}  // namespace tools
