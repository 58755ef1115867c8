#include <chrono>
#include <iostream>
#include <string>

#include "tools/commands/Commands.h"
#include "tools/query/Operation.h"
#include "tools/query/Protocol.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"
#include "tools/session/Snapshot.h"

namespace tools {

namespace {

bool write(const std::string& line) {
  std::cout << line << '\n' << std::flush;
  if (std::cout) return true;
  std::cerr << "contextdata: cannot write the answer [command.output]\n";
  return false;
}

int answerAll(embedded::Host& host, const QueryOptions& options) {
  const embedded::Activation active(host);
  query::Protocol protocol(host, options.trace, std::chrono::milliseconds(options.milliseconds));
  if (!write(protocol.opening())) return NoAnswer;
  std::string line;
  while (readLine(std::cin, line, query::longestLine)) {
    const Interruptible request(host);
    if (!write(protocol.answer(line))) return NoAnswer;
    // After the answer, so that the client learns how far its last request has come.
    if (host.interruptRequested()) return Interrupted;
  }
  return Answered;
}

int listOps() {
  for (const query::Operation& operation : query::operations()) std::cout << operation.name << '\n';
  return Answered;
}

}  // namespace

int runQuery(const QueryOptions& options) {
  if (options.ops) return listOps();
  try {
    const auto host = loadSnapshot(options.snapshot);
    if (options.noCode) host->setCodePolicy(embedded::CodePolicy::Refused);
    return answerAll(*host, options);
  } catch (const embedded::SnapshotError& error) {
    std::cerr << "contextdata: " << messageOf(error) << '\n';
    return NoAnswer;
  }
}

}  // namespace tools
