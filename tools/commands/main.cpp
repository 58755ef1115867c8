// What is typed after `contextdata`: the only source that reads the command-line library, which takes long to compile.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>

#include "host/Members.h"
#include "tools/commands/Commands.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace {

using frontend::CodePolicy;

constexpr std::size_t longestPatience = 86'400'000;

void addSnapshot(CLI::App& command, std::string& snapshot, const char* help) {
  command.add_option("--snapshot", snapshot, help)->type_name("FILE")->required();
}

void addJson(CLI::App& command, bool& json) { command.add_flag("--json", json, "Print JSON, for programs"); }

void addPolicy(CLI::App& command, CodePolicy& policy) {
  const std::vector<CodePolicy> all = {CodePolicy::Never, CodePolicy::StoredValues, CodePolicy::Allowed};
  std::vector<std::string> words;
  for (const CodePolicy each : all) words.push_back(nameOf(each));
  const auto choose = [=, &policy](const std::string& word) {
    policy = all.at(std::ranges::find(words, word) - words.begin());
  };
  command
      .add_option_function<std::string>("--code", choose,
                                        "How far code may run: never, stored-values (the default), allowed")
      ->check(CLI::IsMember(words))
      ->type_name("POLICY");
}

void addLimit(CLI::App& command, std::size_t& limit) {
  command.add_option("--limit", limit, "How many candidates at most, 200 by default")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
}

void addPatience(CLI::App& command, std::size_t& milliseconds, const std::string& help) {
  command
      .add_option("--timeout", milliseconds,
                  help + ", " + std::to_string(milliseconds) + " by default; 0: never")
      ->check(CLI::Range(std::size_t{0}, longestPatience))
      ->type_name("MS");
}

void addCursorOptions(CLI::App& command, tools::CursorOptions& options) {
  command.add_option("TEXT", options.text, "A line of code, for instance 'pump.Fl'")
      ->type_name("")
      ->required();
  addSnapshot(command, options.snapshot, "The session to ask about");
  command.add_option("--cursor", options.cursor, "How many characters are before the cursor; by default all")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  command.add_option("--in", options.function, "The function whose code it is")->type_name("FUNCTION");
  command.add_option("--class", options.className, "The class whose code it is")->type_name("CLASS");
  addPolicy(command, options.policy);
  addLimit(command, options.limit);
  addPatience(command, options.milliseconds, "Stop looking after so many milliseconds");
  command.add_flag("--hidden", options.hidden, "Hidden names too");
  addJson(command, options.json);
}

void addQuery(CLI::App& app, int& status) {
  // Shared with the callback, which runs when this function has returned.
  const auto options = std::make_shared<tools::QueryOptions>();
  CLI::App& command = *app.add_subcommand("query", "Answers requests, one JSON object per line");
  CLI::Option* snapshot =
      command.add_option("--snapshot", options->snapshot, "The session to ask about")->type_name("FILE");
  command.add_flag("--trace", options->trace, "Tell with each answer what was asked of the host");
  command.add_flag("--no-code", options->noCode, "Run no Korval code; answers tell what was refused");
  addPatience(command, options->milliseconds, "Stop each request after so many milliseconds");
  CLI::Option* ops = command.add_flag("--ops", options->ops, "List the operations and end");
  command.callback([=, &status] {
    // Not required() like elsewhere, because --ops needs no session.
    if (snapshot->empty() && ops->empty()) throw CLI::RequiredError("--snapshot");
    status = tools::runQuery(*options);
  });
}

void addComplete(CLI::App& app, int& status) {
  const auto options = std::make_shared<tools::CursorOptions>();
  CLI::App& command = *app.add_subcommand("complete", "Lists what can be typed at a place in a line of code");
  addCursorOptions(command, *options);
  command.callback([options, &status] { status = tools::runComplete(*options); });
}

void addExplain(CLI::App& app, int& status) {
  const auto options = std::make_shared<tools::CursorOptions>();
  const auto name = std::make_shared<std::string>();
  CLI::App& command = *app.add_subcommand("explain", "Says why a name is offered at a place, or is not");
  addCursorOptions(command, *options);
  command.add_option("NAME", *name, "The name to explain")->type_name("")->required();
  command.callback([options, name, &status] { status = tools::runExplain(*options, *name); });
}

void addDescribe(CLI::App& app, int& status) {
  const auto options = std::make_shared<tools::DescribeOptions>();
  CLI::App& command = *app.add_subcommand("describe", "Shows a class: its superclasses and what it offers");
  command.add_option("CLASS", options->className, "For instance 'lab.Pump'")->type_name("")->required();
  addSnapshot(command, options->snapshot, "The session to ask about");
  addJson(command, options->json);
  command.add_flag("--dot", options->dot, "Print a picture of the superclasses, for graphviz")
      ->excludes(command.get_option("--json"));
  std::vector<std::string> levels;
  for (const kcos::AccessWord& known : kcos::accessWords) levels.emplace_back(known.word);
  levels.emplace_back("all");
  command.add_option("--access", options->access, "The access levels to show, 'public' by default")
      ->delimiter(',')
      ->check(CLI::IsMember(levels))
      ->type_name("LEVEL,...");
  command.add_flag("--hidden", options->hidden, "Show hidden members too");
  addPatience(command, options->milliseconds, "Stop looking after so many milliseconds");
  command.callback([options, &status] { status = tools::runDescribe(*options); });
}

void addEval(CLI::App& app, int& status) {
  const auto options = std::make_shared<tools::EvalOptions>();
  CLI::App& command = *app.add_subcommand("eval", "Runs an expression or a script in the session");
  CLI::Option* expression =
      command.add_option("EXPR", options->expression, "For instance 'pump.Flow * 2'")->type_name("");
  CLI::Option* file = command.add_option("--file", options->file, "A script instead")
                          ->type_name("FILE")
                          ->excludes(expression);
  addSnapshot(command, options->snapshot, "The session to run it in");
  addJson(command, options->json);
  command.callback([=, &status] {
    if (expression->empty() && file->empty()) throw CLI::RequiredError("EXPR or --file");
    status = tools::runEval(*options);
  });
}

void addPrompt(CLI::App& app, int& status) {
  const auto options = std::make_shared<tools::PromptOptions>();
  CLI::App& command = *app.add_subcommand("prompt", "Opens a session to work in, line by line");
  addSnapshot(command, options->snapshot, "The session to work in");
  addPolicy(command, options->policy);
  addLimit(command, options->limit);
  addPatience(command, options->milliseconds,
              "Stop looking, for TAB, ? and :explain, after so many milliseconds");
  CLI::Option* file =
      command.add_option("--history", options->history, "Where lines are kept")->type_name("FILE");
  command.add_flag("--no-history", options->noHistory, "Keep no lines")->excludes(file);
  command.callback([options, &status] { status = tools::runPrompt(*options); });
}

void addServe(CLI::App& app, int& status) {
  const auto snapshot = std::make_shared<std::string>();
  CLI::App& command = *app.add_subcommand("serve", "Serves editors by the Language Server Protocol");
  addSnapshot(command, *snapshot, "The session to ask about");
  command.add_flag_function(
      "--stdio", [](std::int64_t) {}, "Use standard input and output, which is what happens anyway");
  command.callback([snapshot, &status] { status = tools::runServe(*snapshot); });
}

std::string failure(const CLI::App*, const CLI::Error& error) {
  return std::string("contextdata: ") + error.what() +
         " [command.usage]\nRun with --help for more information.\n";
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Asks the context-data library about the classes, objects and names of a session.");
  app.set_version_flag("--version", "contextdata " + tools::version());
  app.failure_message(failure);
  app.require_subcommand(1);
  int status = tools::Usage;
  addQuery(app, status);
  addComplete(app, status);
  addExplain(app, status);
  addDescribe(app, status);
  addEval(app, status);
  addPrompt(app, status);
  addServe(app, status);
  // Before the callbacks, which run while the line is being parsed.
  tools::handleInterrupts();
  try {
    app.parse(argc, argv);
    return status;
  } catch (const CLI::ParseError& error) {
    // --help and --version arrive here as well; the library's own codes say more than callers need.
    return app.exit(error) == 0 ? tools::Answered : tools::Usage;
  }
}
