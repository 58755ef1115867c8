#include "tools/lsp/SessionFile.h"

#include <sys/stat.h>

#include <utility>

#include "tools/lsp/Diagnostics.h"
#include "tools/lsp/Documents.h"
#include "tools/lsp/Inbox.h"
#include "tools/render/Text.h"
#include "tools/session/Snapshot.h"

namespace tools::lsp {

/// A request that has been cancelled before it began is interrupted once it begins, which forgets earlier interrupts.
SessionFile::Active::Active(std::unique_ptr<embedded::Host> loaded, Inbox& inbox)
    : host(std::move(loaded)), activation(*host), session(*host, [&inbox] { inbox.renewInterrupt(); }) {}

SessionFile::SessionFile(std::string file, Inbox& inbox) : file_(std::move(file)), inbox_(inbox) {
  use(loadSnapshot(file_));
}

SessionFile::~SessionFile() { inbox_.attach(nullptr); }

void SessionFile::use(std::unique_ptr<embedded::Host> host) {
  inbox_.attach(nullptr);
  active_.reset();  // gives the thread back before it is taken again
  active_.emplace(std::move(host), inbox_);
  inbox_.attach(active_->host.get());
}

void SessionFile::reload(Client& client) {
  try {
    // Loaded before the old session goes: a file that is broken changes nothing.
    use(embedded::Host::load(file_));
    client.publish(uriOf(file_), {});
    client.log(Severity::Info, file_ + " has been loaded again");
  } catch (const embedded::SnapshotError& error) {
    publishFailure(client, uriOf(file_), error);
    client.show(Severity::Warning, messageOf(error) + ". What was loaded before is still used.");
  }
}

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
  if (stat(file_.c_str(), &found) != 0) return {};  // a missing file is a state, too
  // The file's identity, too: one that replaces another may have the same size and time.
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
    // Twice the same: nobody is in the middle of writing it.
    if (now == before && now != told_) {
      told_ = now;
      changed_();
    }
    before = now;
    looked_();
  }
}

}  // namespace tools::lsp
