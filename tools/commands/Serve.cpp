#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <string>

#include "tools/commands/Commands.h"
#include "tools/lsp/Inbox.h"
#include "tools/lsp/Input.h"
#include "tools/lsp/Server.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools {

namespace {

bool writeAll(const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t count = ::write(STDOUT_FILENO, bytes.data() + done, bytes.size() - done);
    // A write may be cut short, by a signal too, and goes on where it stopped.
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) done += static_cast<std::size_t>(count);
  }
  return true;
}

/// Three threads: one reads, one watches the snapshot, and this one answers.
int serveFile(const std::string& snapshot) {
  signal(SIGPIPE, SIG_IGN);  // a client that is gone is seen when it is written to
  lsp::Inbox inbox;
  lsp::ClientProcess process;
  const lsp::SnapshotWatch watch(
      snapshot, [&] { inbox.put(lsp::SnapshotChanged{}); },
      [&] {
        if (process.isGone()) inbox.put(lsp::InputEnded{"the client's process has ended"});
      });
  // After the watch has looked at the file: a change while it is being loaded is noticed.
  lsp::SessionFile session(snapshot, inbox);
  lsp::Client client(writeAll);
  // Last, and so the first to go: nothing is read for a session that is gone.
  const lsp::Input input(STDIN_FILENO, inbox);
  return lsp::Server(inbox, client, session, process).run();
}

}  // namespace

int runServe(const std::string& snapshot) {
  try {
    return serveFile(snapshot);
  } catch (const embedded::SnapshotError& error) {
    std::cerr << "contextdata: " << messageOf(error) << '\n';
    return NoAnswer;
  }
}

}  // namespace tools
