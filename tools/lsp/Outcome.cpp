#include "tools/lsp/Outcome.h"

#include "tools/lsp/Params.h"

namespace tools::lsp {

using frontend::Status;

void logOutcome(Client& client, const std::string& request, const frontend::Outcome& outcome) {
  const std::string head = request + ": " + frontend::nameOf(outcome.status) + ": ";
  if (outcome.status == Status::Failed) {
    client.log(Severity::Warning, head + utf8Of(outcome.reason));
  } else if (outcome.status == Status::RefusedCode || outcome.status == Status::TimedOut) {
    client.log(Severity::Log, head + utf8Of(outcome.reason));
  }
  if (!outcome.printed.empty()) client.log(Severity::Log, "printed meanwhile: " + utf8Of(outcome.printed));
}

}  // namespace tools::lsp
