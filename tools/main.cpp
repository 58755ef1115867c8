#include <CLI/CLI.hpp>

#include "tools/Complete.h"
#include "tools/Describe.h"
#include "tools/Eval.h"
#include "tools/ExitCode.h"
#include "tools/Explain.h"
#include "tools/Interrupt.h"
#include "tools/Prompt.h"
#include "tools/Query.h"
#include "tools/Serve.h"
#include "tools/Version.h"

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
