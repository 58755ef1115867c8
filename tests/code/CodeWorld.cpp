#include "tests/code/CodeWorld.h"

#include <cstdlib>

namespace code {

std::string fixture(const std::string& name) {
  const char* source = std::getenv("CONTEXTDATA_SOURCE");
  return std::string(source == nullptr ? "." : source) + "/tests/code/" + name;
}

std::u16string wide(const std::string& text) { return {text.begin(), text.end()}; }

World::World() : host_(embedded::Host::load(fixture("world.json"))), active_(*host_) {}

World::World(const std::string& json)
    : host_(std::make_unique<embedded::Host>(embedded::readSnapshotText(json, "world"))), active_(*host_) {}

std::string World::failure() {
  const auto failed = host_->codeFailure();
  return failed ? "!" + failed->id + " " + std::to_string(failed->line) + ":" + std::to_string(failed->column)
                : "";
}

std::string World::run(const std::u16string& text) {
  matrix::setErrorMode(matrix::ErrorMode::Silent);
  inEvalExp(text, 0, nullptr, true, Tamsix::orvo::EvalSource::Query);
  return shown(host_->takeOutput()) + failure();
}

std::string World::run(const std::string& text) { return run(wide(text)); }

std::string World::value(const std::string& expression) {
  const std::string printed = run(expression);
  return printed.ends_with("\n") ? printed.substr(0, printed.size() - 1) : printed;
}

}  // namespace code
