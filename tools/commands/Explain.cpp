#include "tools/commands/Explain.h"

#include <boost/locale/encoding_utf.hpp>
#include <memory>
#include <string>
#include <vector>

#include "frontend/Explanation.h"
#include "tools/commands/Answer.h"
#include "tools/commands/FrontEnd.h"
#include "tools/render/Table.h"
#include "tools/session/HostSession.h"

namespace tools {

namespace {

using frontend::Explanation;
using frontend::Status;

struct ExplainOptions {
  FrontEndOptions place;
  std::string name;
};

Answer answerOf(const ExplainOptions& options, embedded::Host& host) {
  const Line line = lineOf(options.place, "explain");
  if (!isUtf8(options.name)) throw AnswerError{"explain.not-utf8", "the name is no UTF-8"};
  HostSession session(host);
  const Explanation explanation = frontend::explain(session, line.text, line.cursor,
                                                    boost::locale::conv::utf_to_utf<char16_t>(options.name),
                                                    placeOf(options.place), optionsOf(options.place));
  const frontend::Outcome& outcome = explanation.outcome;
  if (outcome.status == Status::Interrupted)
    throw AnswerError{"explain.interrupted", "interrupted", {}, Interrupted};
  if (outcome.status == Status::Failed) throw AnswerError{"explain.failed", printable(outcome.reason)};
  if (options.place.json) return {lineOf(jsonOf(explanation)) + '\n'};
  return {textOf(explanation), noticeOf(outcome)};
}

}  // namespace

std::string textOf(const Explanation& explanation) {
  std::vector<std::vector<std::string>> rows;
  for (const frontend::Reason& reason : explanation.reasons) {
    rows.push_back({nameOf(reason.rule), printable(reason.detail)});
  }
  return printable(explanation.name) + (explanation.isOffered ? " is offered\n" : " is not offered\n") +
         tableOf(rows);
}

Json jsonOf(const Explanation& explanation) {
  Json json = jsonOf(explanation.outcome);
  json["name"] = jsonOf(explanation.name);
  json["isOffered"] = explanation.isOffered;
  json["reasons"] = Json::array();
  for (const frontend::Reason& reason : explanation.reasons) {
    json["reasons"].push_back({{"rule", nameOf(reason.rule)}, {"detail", jsonOf(reason.detail)}});
  }
  return json;
}

void addExplain(CLI::App& app, int& status) {
  const auto options = std::make_shared<ExplainOptions>();
  CLI::App& command = *app.add_subcommand("explain", "Says why a name is offered at a place, or is not");
  addFrontEndOptions(command, options->place);
  command.add_option("NAME", options->name, "The name to explain")->type_name("")->required();
  command.callback([options, &status] {
    status = answerOnce({"explain", options->place.snapshot, options->place.json},
                        [&](embedded::Host& host) { return answerOf(*options, host); });
  });
}

}  // namespace tools
