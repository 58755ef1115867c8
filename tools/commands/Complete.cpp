#include "tools/commands/Complete.h"

#include <memory>
#include <string>
#include <vector>

#include "frontend/Completion.h"
#include "tools/commands/Answer.h"
#include "tools/commands/FrontEnd.h"
#include "tools/render/Table.h"
#include "tools/session/HostSession.h"

namespace tools {

namespace {

using frontend::Completion;
using frontend::Status;

std::string textOf(const Completion& completion) {
  std::vector<std::vector<std::string>> rows;
  for (const frontend::Candidate& candidate : completion.candidates) {
    rows.push_back({printable(candidate.label), kindOf(candidate), detailsOf(candidate)});
  }
  return tableOf(rows);
}

std::string jsonTextOf(const Completion& completion) {
  Json answer = jsonOf(completion.outcome);
  answer["begin"] = completion.begin;
  answer["end"] = completion.end;
  answer["total"] = completion.total;
  answer["candidates"] = Json::array();
  for (const auto& candidate : completion.candidates) answer["candidates"].push_back(jsonOf(candidate));
  return lineOf(answer) + '\n';
}

Answer answerOf(const FrontEndOptions& options, embedded::Host& host) {
  const Line line = lineOf(options, "complete");
  HostSession session(host);
  const Completion completion =
      frontend::complete(session, line.text, line.cursor, placeOf(options), optionsOf(options));
  const frontend::Outcome& outcome = completion.outcome;
  if (outcome.status == Status::Interrupted)
    throw AnswerError{"complete.interrupted", "interrupted", Json::object(), Interrupted};
  if (outcome.status == Status::Failed && completion.candidates.empty()) {
    throw AnswerError{"complete.failed", printable(outcome.reason)};
  }
  if (options.json) return {jsonTextOf(completion)};
  const std::string notice = noticeOf(outcome);
  const bool isEmpty = completion.candidates.empty() && notice.empty();
  return {textOf(completion), isEmpty ? "nothing completes '" + printable(line.text) + "'" : notice};
}

}  // namespace

void addComplete(CLI::App& app, int& status) {
  const auto options = std::make_shared<FrontEndOptions>();
  CLI::App& command = *app.add_subcommand("complete", "Lists what can be typed at a place in a line of code");
  addFrontEndOptions(command, *options);
  command.callback([options, &status] {
    status = answerOnce({"complete", options->snapshot, options->json},
                        [&](embedded::Host& host) { return answerOf(*options, host); });
  });
}

}  // namespace tools
