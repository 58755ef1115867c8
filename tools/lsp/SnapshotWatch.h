#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <thread>

namespace tools::lsp {

/// A thread that looks at a file four times a second and tells when it has become another one. Looking needs nothing that
/// some file systems and editors' ways of saving do not have. A file that is being written is told when it rests.
class SnapshotWatch {
 public:
  static constexpr std::chrono::milliseconds pause{250};

  /// Changes count from now on. `changed` is called on the thread of the watch, as is `looked`, after each look.
  SnapshotWatch(std::filesystem::path file, std::function<void()> changed, std::function<void()> looked);
  ~SnapshotWatch();
  SnapshotWatch(const SnapshotWatch&) = delete;
  SnapshotWatch& operator=(const SnapshotWatch&) = delete;

 private:
  /// Device and inode, size, time of the last change; all 0 for no file.
  using State = std::array<std::uint64_t, 5>;

  State look() const;
  void watch();
  bool waitForStop();

  const std::filesystem::path file_;
  const std::function<void()> changed_;
  const std::function<void()> looked_;
  State told_;
  std::mutex mutex_;
  std::condition_variable stopped_;
  bool stop_ = false;
  std::thread thread_;
};

}  // namespace tools::lsp
