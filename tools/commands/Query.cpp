#include "tools/commands/Query.h"

#include <iostream>
#include <memory>
#include <string>

#include "tools/commands/ExitCode.h"
#include "tools/query/Operation.h"
#include "tools/query/Protocol.h"
#include "tools/session/Interrupt.h"
#include "tools/session/Snapshot.h"

namespace tools {

namespace {

struct QueryOptions {
  std::string snapshot;
  bool trace = false;
  bool noCode = false;
  bool ops = false;
};

/// Reads a line, of which it keeps one character more than a request may have; false at the end of the input.
bool readLine(std::istream& input, std::string& line) {
  line.clear();
  std::streambuf& buffer = *input.rdbuf();
  int character = buffer.sbumpc();
  if (character == EOF) return false;
  for (; character != '\n' && character != EOF; character = buffer.sbumpc()) {
    if (line.size() <= query::longestLine) line.push_back(static_cast<char>(character));
  }
  return true;
}

bool write(const Json& answer) {
  std::cout << lineOf(answer) << '\n' << std::flush;
  if (std::cout) return true;
  std::cerr << "contextdata: cannot write the answer [command.output]\n";
  return false;
}

int serve(embedded::Host& host, bool trace) {
  const embedded::Activation active(host);
  query::Protocol protocol(host, trace);
  if (!write(protocol.opening())) return NoAnswer;
  std::string line;
  while (readLine(std::cin, line)) {
    const Interruptible request(host);
    if (!write(protocol.answer(line))) return NoAnswer;
    if (host.interruptRequested()) return Interrupted;
  }
  return Answered;
}

int listOps() {
  for (const query::Operation& operation : query::operations()) std::cout << operation.name << '\n';
  return Answered;
}

int run(const QueryOptions& options) {
  if (options.ops) return listOps();
  try {
    const auto host = loadSnapshot(options.snapshot);
    if (options.noCode) host->setCodePolicy(embedded::CodePolicy::Refused);
    return serve(*host, options.trace);
  } catch (const embedded::SnapshotError& error) {
    std::cerr << "contextdata: " << describe(error) << '\n';
    return NoAnswer;
  }
}

}  // namespace

void addQuery(CLI::App& app, int& status) {
  const auto options = std::make_shared<QueryOptions>();
  CLI::App& command = *app.add_subcommand("query", "Answers requests, one JSON object per line");
  CLI::Option* snapshot =
      command.add_option("--snapshot", options->snapshot, "The session to ask about")->type_name("FILE");
  command.add_flag("--trace", options->trace, "Tell with each answer what was asked of the host");
  command.add_flag("--no-code", options->noCode, "Run no Korval code; answers tell what was refused");
  CLI::Option* ops = command.add_flag("--ops", options->ops, "List the operations and end");
  command.callback([=, &status] {
    if (snapshot->empty() && ops->empty()) throw CLI::RequiredError("--snapshot");
    status = run(*options);
  });
}

}  // namespace tools
