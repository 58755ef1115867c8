#include "tests/code/CodeWorld.h"

namespace code {

std::string World::run(const std::string& text) {
  matrix::setErrorMode(matrix::ErrorMode::Silent);
  inEvalExp(wide(text), 0, nullptr, true, Tamsix::orvo::EvalSource::Query);
  const std::string printed = shown(host.takeOutput());
  const auto failed = host.codeFailure();
  if (!failed) return printed;
  return printed + "!" + failed->id + " " + std::to_string(failed->line) + ":" +
         std::to_string(failed->column);
}

std::string World::value(const std::string& expression) {
  const std::string printed = run(expression);
  return printed.ends_with("\n") ? printed.substr(0, printed.size() - 1) : printed;
}

}  // namespace code
