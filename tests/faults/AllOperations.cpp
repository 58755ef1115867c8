#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"

namespace {

/// The one list of exported operations.
std::set<std::string> exportedOperations() {
  const char* source = std::getenv("CONTEXTDATA_SOURCE");
  EXPECT_NE(source, nullptr) << "CONTEXTDATA_SOURCE is not set";
  std::ifstream file(std::string(source != nullptr ? source : ".") + "/packaging/operations.txt");
  std::set<std::string> names;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.front() != '#') names.insert(line);
  }
  return names;
}

class FaultLoop : public testing::Test {
 protected:
  FaultLoop() { faults::activeWorld() = world_.get(); }

  std::unique_ptr<embedded::Host> world_ = faults::makeWorld();
  embedded::Activation active_{*world_};
};

TEST_F(FaultLoop, HasAQuestionForEveryExportedOperation) {
  std::set<std::string> asked;
  for (const faults::Question& question : faults::allQuestions()) asked.insert(question.operation);
  EXPECT_EQ(asked, exportedOperations());
}

TEST_F(FaultLoop, EveryCallFailsInEveryWay) {
  std::size_t happened = 0;
  for (const faults::Question& question : faults::allQuestions())
    happened += failEveryCall(*world_, question);
  EXPECT_GT(happened, 1000U);
}

}  // namespace
