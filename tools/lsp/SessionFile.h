#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "embedded/Host.h"
#include "frontend/Session.h"
#include "tools/lsp/Client.h"
#include "tools/lsp/Inbox.h"
#include "tools/session/HostSession.h"

namespace tools::lsp {

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

  /// Takes the file as it is now, or tells the client why not and keeps what there is.
  void reload(Client& client);

 private:
  /// A host that is this thread's.
  struct Active {
    /// A request may have been cancelled before it has begun.
    Active(std::unique_ptr<embedded::Host> loaded, Inbox& inbox)
        : host(std::move(loaded)), activation(*host), session(*host, [&inbox] { inbox.renewInterrupt(); }) {}

    std::unique_ptr<embedded::Host> host;
    embedded::Activation activation;
    HostSession session;
  };

  void use(std::unique_ptr<embedded::Host> host);

  const std::string file_;
  Inbox& inbox_;
  std::optional<Active> active_;
};

}  // namespace tools::lsp
