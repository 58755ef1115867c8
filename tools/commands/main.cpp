#include <CLI/CLI.hpp>

#include "tools/commands/Complete.h"
#include "tools/commands/Describe.h"
#include "tools/commands/Eval.h"
#include "tools/commands/ExitCode.h"
#include "tools/commands/Explain.h"
#include "tools/commands/Prompt.h"
#include "tools/commands/Query.h"
#include "tools/commands/Serve.h"
#include "tools/commands/Version.h"
#include "tools/session/Interrupt.h"

namespace {

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
  tools::addQuery(app, status);
  tools::addComplete(app, status);
  tools::addExplain(app, status);
  tools::addDescribe(app, status);
  tools::addEval(app, status);
  tools::addPrompt(app, status);
  tools::addServe(app, status);
  tools::handleInterrupts();
  try {
    app.parse(argc, argv);
    return status;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? tools::Answered : tools::Usage;
  }
}
