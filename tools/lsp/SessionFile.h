#pragma once

// The snapshot file that the server works on: the session in it, and a watch that sees when it changes.

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "embedded/Host.h"
#include "frontend/Session.h"
#include "tools/lsp/Client.h"
#include "tools/session/HostSession.h"

namespace tools::lsp {

class Inbox;

/// The session of the snapshot file: the last good one.
class SessionFile {
 public:
  /// Throws embedded::SnapshotError.
  SessionFile(std::string file, Inbox& inbox);
  ~SessionFile();
  SessionFile(const SessionFile&) = delete;
  SessionFile& operator=(const SessionFile&) = delete;

  const std::string& file() const noexcept { return file_; }
  embedded::Host& host() noexcept { return *active_->host; }
  frontend::Session& session() noexcept { return active_->session; }

  /// Loads the file as it is now, or tells the client why not and keeps what there is.
  void reload(Client& client);

 private:
  /// A host that is this thread's.
  struct Active {
    Active(std::unique_ptr<embedded::Host> loaded, Inbox& inbox);

    std::unique_ptr<embedded::Host> host;
    embedded::Activation activation;
    HostSession session;
  };

  void use(std::unique_ptr<embedded::Host> host);

  const std::string file_;
  Inbox& inbox_;
  std::optional<Active> active_;
};

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
