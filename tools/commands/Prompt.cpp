#include "tools/commands/Prompt.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <limits>
#include <memory>
#include <string>

#include "host/Arrays.h"
#include "tools/commands/ExitCode.h"
#include "tools/commands/FrontEnd.h"
#include "tools/prompt/Conversation.h"
#include "tools/prompt/Editor.h"
#include "tools/prompt/PlainLines.h"
#include "tools/prompt/Terminal.h"
#include "tools/session/Interrupt.h"
#include "tools/session/Snapshot.h"

namespace tools {

namespace {

using prompt::Conversation;
using prompt::LiveSession;

constexpr std::size_t longestPatience = 86'400'000;

struct PromptOptions {
  FrontEndOptions frontEnd;
  std::string history;
  bool noHistory = false;
};

int editLines(LiveSession& live, const PromptOptions& options) {
  prompt::useUtf8();
  noteInterrupts();
  const std::filesystem::path named = options.history;
  prompt::History history(options.noHistory ? "" : named.empty() ? prompt::History::usualFile() : named);
  prompt::Completer completer(live);
  prompt::Editor lines(completer, history);
  return Conversation(live, lines, false).run();
}

int readLines(LiveSession& live) {
  prompt::PlainLines lines(std::cin);
  return Conversation(live, lines, true).run();
}

/// Nothing limits how long code may run: somebody is there to stop it.
int work(const PromptOptions& options, embedded::Host& host) {
  const embedded::Activation active(host);
  embedded::CodeLimits limits;
  limits.steps = std::numeric_limits<std::uint64_t>::max();
  host.setCodeLimits(limits);
  matrix::setErrorMode(matrix::ErrorMode::Silent);  // errors are told with their place
  LiveSession live(host);
  live.policy = optionsOf(options.frontEnd).policy;
  live.mostCandidates = options.frontEnd.limit;
  live.patience = std::chrono::milliseconds(options.frontEnd.milliseconds);
  const bool isTerminal = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
  return isTerminal ? editLines(live, options) : readLines(live);
}

int run(const PromptOptions& options) {
  try {
    return work(options, *loadSnapshot(options.frontEnd.snapshot));
  } catch (const embedded::SnapshotError& error) {
    std::cerr << "contextdata: " << describe(error) << '\n';
    return NoAnswer;
  }
}

}  // namespace

void addPrompt(CLI::App& app, int& status) {
  const auto options = std::make_shared<PromptOptions>();
  FrontEndOptions& frontEnd = options->frontEnd;
  frontEnd.milliseconds = 300;
  CLI::App& command = *app.add_subcommand("prompt", "Opens a session to work in, line by line");
  command.add_option("--snapshot", frontEnd.snapshot, "The session to work in")
      ->type_name("FILE")
      ->required();
  addPolicyOption(command, frontEnd);
  command.add_option("--limit", frontEnd.limit, "How many candidates at most, 200 by default")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  command
      .add_option("--timeout", frontEnd.milliseconds, "How long TAB may take, 300 milliseconds by default")
      ->check(CLI::Range(std::size_t{0}, longestPatience))
      ->type_name("MS");
  CLI::Option* file =
      command.add_option("--history", options->history, "Where lines are kept")->type_name("FILE");
  command.add_flag("--no-history", options->noHistory, "Keep no lines")->excludes(file);
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace tools
