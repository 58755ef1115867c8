#include "tools/lsp/SessionFile.h"

#include <utility>

#include "tools/lsp/Diagnostics.h"
#include "tools/lsp/Uri.h"
#include "tools/render/Errors.h"
#include "tools/session/Snapshot.h"

namespace tools::lsp {

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
    use(embedded::Host::load(file_));
    clearDiagnostics(client, uriOf(file_));
    client.log(Severity::Info, file_ + " has been loaded again");
  } catch (const embedded::SnapshotError& error) {
    publishFailure(client, uriOf(file_), error);
    client.show(Severity::Warning, describe(error) + ". What was loaded before is still used.");
  }
}

}  // namespace tools::lsp
