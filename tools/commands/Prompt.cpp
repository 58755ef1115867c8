#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <limits>

#include "host/Arrays.h"
#include "tools/commands/Commands.h"
#include "tools/prompt/Conversation.h"
#include "tools/prompt/Editor.h"
#include "tools/prompt/Terminal.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"
#include "tools/session/Snapshot.h"

namespace tools {

namespace {

using prompt::Conversation;
using prompt::LiveSession;

int editLines(LiveSession& live, const PromptOptions& options) {
  prompt::useUtf8();
  // At a terminal Ctrl-C drops a line, and does not end the prompt.
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
  live.policy = options.policy;
  live.mostCandidates = options.limit;
  live.patience = std::chrono::milliseconds(options.milliseconds);
  const bool isTerminal = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
  return isTerminal ? editLines(live, options) : readLines(live);
}

}  // namespace

int runPrompt(const PromptOptions& options) {
  try {
    return work(options, *loadSnapshot(options.snapshot));
  } catch (const embedded::SnapshotError& error) {
    std::cerr << "contextdata: " << messageOf(error) << '\n';
    return NoAnswer;
  }
}

}  // namespace tools
