#include "tools/Complete.h"

#include <memory>
#include <string>
#include <vector>

#include "tools/Answer.h"
#include "tools/Completion.h"
#include "tools/Table.h"
#include "tools/Text.h"

namespace tools {

namespace {

struct CompleteOptions {
  std::string text;
  std::string snapshot;
  bool json = false;
};

std::string textOf(const std::vector<Candidate>& candidates) {
  std::vector<std::vector<std::string>> rows;
  for (const Candidate& candidate : candidates) rows.push_back({printable(candidate.name), candidate.kind});
  return tableOf(rows);
}

std::string jsonTextOf(const std::vector<Candidate>& candidates) {
  Json list = Json::array();
  for (const Candidate& candidate : candidates) {
    list.push_back({{"name", jsonOf(candidate.name)}, {"kind", candidate.kind}});
  }
  return lineOf({{"candidates", std::move(list)}}) + '\n';
}

Answer answerOf(const CompleteOptions& options, const std::vector<Candidate>& candidates) {
  if (options.json) return {jsonTextOf(candidates)};
  if (candidates.empty()) return {"", "no members fit '" + options.text + "'"};
  return {textOf(candidates)};
}

int run(const CompleteOptions& options) {
  return answerOnce({"complete", options.snapshot, options.json},
                    [&](embedded::Host& host) { return answerOf(options, complete(host, options.text)); });
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
