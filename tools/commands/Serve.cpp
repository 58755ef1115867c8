#include "tools/commands/Serve.h"

#include <signal.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>

#include "tools/commands/ExitCode.h"
#include "tools/lsp/ClientProcess.h"
#include "tools/lsp/Input.h"
#include "tools/lsp/Server.h"
#include "tools/lsp/SnapshotWatch.h"
#include "tools/session/Snapshot.h"

namespace tools {

namespace {

bool writeAll(const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t count = write(STDOUT_FILENO, bytes.data() + done, bytes.size() - done);
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) done += static_cast<std::size_t>(count);
  }
  return true;
}

/// Three threads: one reads, one watches the snapshot, and this one answers.
int serveFile(const std::string& snapshot) {
  signal(SIGPIPE, SIG_IGN);  // a client that is gone is seen when it is written to
  serve::Inbox inbox;
  serve::ClientProcess process;
  const serve::SnapshotWatch watch(
      snapshot, [&] { inbox.put(serve::SnapshotChanged{}); },
      [&] {
        if (process.isGone()) inbox.put(serve::InputEnded{"the client's process has ended"});
      });
  serve::SessionFile session(snapshot, inbox);
  serve::Client client(writeAll);
  const serve::Input input(STDIN_FILENO, inbox);
  return serve::Server(inbox, client, session, process).run();
}

int run(const std::string& snapshot) {
  try {
    return serveFile(snapshot);
  } catch (const embedded::SnapshotError& error) {
    std::cerr << "contextdata: " << describe(error) << '\n';
    return NoAnswer;
  }
}

}  // namespace

void addServe(CLI::App& app, int& status) {
  const auto snapshot = std::make_shared<std::string>();
  CLI::App& command = *app.add_subcommand("serve", "Serves editors by the Language Server Protocol");
  command.add_option("--snapshot", *snapshot, "The session to ask about")->type_name("FILE")->required();
  command.add_flag_function(
      "--stdio", [](std::int64_t) {}, "Use standard input and output, which is what happens anyway");
  command.callback([snapshot, &status] { status = run(*snapshot); });
}

}  // namespace tools
