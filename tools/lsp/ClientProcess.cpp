#include "tools/lsp/ClientProcess.h"

#include <signal.h>

#include <cerrno>

namespace tools::lsp {

namespace {

bool exists(int process) { return process > 0 && (kill(process, 0) == 0 || errno != ESRCH); }

}  // namespace

void ClientProcess::set(int process) noexcept { process_ = exists(process) ? process : 0; }

bool ClientProcess::isGone() const noexcept {
  const int process = process_;
  return process != 0 && !exists(process);
}

}  // namespace tools::lsp
