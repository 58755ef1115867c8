#pragma once

#include <memory>
#include <optional>
#include <string>

#include "embedded/Host.h"
#include "tools/serve/Client.h"
#include "tools/serve/Inbox.h"

namespace tools::serve {

/// The session of the snapshot file: the last good one.
class SessionFile {
 public:
  /// Throws embedded::SnapshotError.
  SessionFile(std::string file, Inbox& inbox);
  ~SessionFile();
  SessionFile(const SessionFile&) = delete;
  SessionFile& operator=(const SessionFile&) = delete;

  const std::string& file() const noexcept { return file_; }
  embedded::Host& host() noexcept { return active_->host(); }

  /// Takes the file as it is now, or tells the client why not and keeps what there is.
  void reload(Client& client);

 private:
  /// A host, and this thread's.
  class Active {
   public:
    explicit Active(std::unique_ptr<embedded::Host> host) : host_(std::move(host)), activation_(*host_) {}
    embedded::Host& host() noexcept { return *host_; }

   private:
    std::unique_ptr<embedded::Host> host_;
    embedded::Activation activation_;
  };

  void use(std::unique_ptr<embedded::Host> host);

  const std::string file_;
  Inbox& inbox_;
  std::optional<Active> active_;
};

}  // namespace tools::serve
