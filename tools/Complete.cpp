#include "tools/Complete.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "host/Exceptions.h"
#include "tools/Completion.h"
#include "tools/Exceptions.h"
#include "tools/ExitCode.h"
#include "tools/Interrupt.h"
#include "tools/Snapshot.h"

namespace tools {

namespace {

struct CompleteOptions {
  std::string text;
  std::string snapshot;
  bool json = false;
};

void printTable(const std::vector<Candidate>& candidates) {
  std::size_t width = 0;
  for (const Candidate& candidate : candidates) width = std::max(width, columnsOf(candidate.name));
  for (const Candidate& candidate : candidates) {
    const std::string gap(width - columnsOf(candidate.name) + 2, ' ');
    std::cout << printable(candidate.name) << gap << candidate.kind << '\n';
  }
}

void printJson(const std::vector<Candidate>& candidates) {
  Json list = Json::array();
  for (const Candidate& candidate : candidates) {
    list.push_back({{"name", jsonOf(candidate.name)}, {"kind", candidate.kind}});
  }
  std::cout << lineOf({{"candidates", std::move(list)}}) << '\n';
}

int print(const CompleteOptions& options, const std::vector<Candidate>& candidates) {
  if (options.json) {
    printJson(candidates);
  } else if (candidates.empty()) {
    std::cerr << "contextdata: no members fit '" << options.text << "'\n";
  } else {
    printTable(candidates);
  }
  std::cout << std::flush;
  if (std::cout) return Answered;
  std::cerr << "contextdata: cannot write the answer [command.output]\n";
  return NoAnswer;
}

/// For programs the error as JSON, for people its text.
int fail(const CompleteOptions& options, const Json& error, const std::string& text, int status = NoAnswer) {
  if (options.json) {
    std::cout << lineOf({{"error", error}}) << '\n';
  } else {
    std::cerr << "contextdata: " << text << '\n';
  }
  return status;
}

int fail(const CompleteOptions& options, const CompletionError& error, int status = NoAnswer) {
  return fail(options, {{"code", error.code}, {"message", error.message}},
              error.message + " [" + error.code + "]", status);
}

int answer(const CompleteOptions& options, embedded::Host& host) {
  const CompletionError interrupted = {"complete.interrupted", "interrupted"};
  const embedded::Activation active(host);
  const Interruptible request(host);
  try {
    const std::vector<Candidate> candidates = complete(host, options.text);
    if (host.interruptRequested()) return fail(options, interrupted, Interrupted);
    return print(options, candidates);
  } catch (const Tamsix::System::InterruptException&) {
    return fail(options, interrupted, Interrupted);
  } catch (const CompletionError& error) {
    return fail(options, error);
  } catch (...) {
    const Json exception = describeCurrentException();
    return fail(
        options,
        {{"code", "complete.failed"}, {"message", "the class system failed"}, {"exception", exception}},
        "the class system failed: " + lineOf(exception) + " [complete.failed]");
  }
}

int run(const CompleteOptions& options) {
  try {
    return answer(options, *loadSnapshot(options.snapshot));
  } catch (const embedded::SnapshotError& error) {
    return fail(options, jsonOf(error), describe(error));
  }
}

}  // namespace

void addComplete(CLI::App& app, int& status) {
  const auto options = std::make_shared<CompleteOptions>();
  CLI::App& command =
      *app.add_subcommand("complete", "Lists what can follow a variable or a class and a dot");
  command.add_option("TEXT", options->text, "For instance 'pump.', 'pump.Fl' or 'lab.Pump.'")
      ->type_name("")
      ->required();
  command.add_option("--snapshot", options->snapshot, "The session to ask about")
      ->type_name("FILE")
      ->required();
  command.add_flag("--json", options->json, "Print JSON, for programs");
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace tools
