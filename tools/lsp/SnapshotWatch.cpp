#include "tools/lsp/SnapshotWatch.h"

#include <sys/stat.h>

#include <utility>

namespace tools::lsp {

SnapshotWatch::SnapshotWatch(std::filesystem::path file, std::function<void()> changed,
                             std::function<void()> looked)
    : file_(std::move(file)),
      changed_(std::move(changed)),
      looked_(std::move(looked)),
      told_(look()),
      thread_([this] { watch(); }) {}

SnapshotWatch::~SnapshotWatch() {
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
  }
  stopped_.notify_one();
  thread_.join();
}

SnapshotWatch::State SnapshotWatch::look() const {
  struct stat found = {};
  if (stat(file_.c_str(), &found) != 0) return {};
  return {found.st_dev, found.st_ino, static_cast<std::uint64_t>(found.st_size),
          static_cast<std::uint64_t>(found.st_mtim.tv_sec),
          static_cast<std::uint64_t>(found.st_mtim.tv_nsec)};
}

bool SnapshotWatch::waitForStop() {
  std::unique_lock lock(mutex_);
  return stopped_.wait_for(lock, pause, [this] { return stop_; });
}

void SnapshotWatch::watch() {
  State before = told_;
  while (!waitForStop()) {
    const State now = look();
    if (now == before && now != told_) {
      told_ = now;
      changed_();
    }
    before = now;
    looked_();
  }
}

}  // namespace tools::lsp
