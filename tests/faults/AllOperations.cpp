#include <gtest/gtest.h>

#include <set>
#include <string>

#include "host/Exceptions.h"
#include "tests/faults/FaultLoop.h"
#include "tests/support/Table.h"
#include "tests/support/Trap.h"

namespace {

class FaultLoop : public testing::Test {
 protected:
  FaultLoop() { faults::activeWorld() = world_.get(); }

  std::unique_ptr<embedded::Host> world_ = faults::makeWorld();
  embedded::Activation active_{*world_};
};

TEST_F(FaultLoop, HasAQuestionForEveryExportedOperation) {
  std::set<std::string> asked, exported;
  for (const faults::Question& question : faults::allQuestions()) asked.insert(question.operation);
  for (const auto& [operation] : rowsOf<1>("packaging/operations.txt")) exported.insert(operation);
  EXPECT_EQ(asked, exported);
}

TEST_F(FaultLoop, EveryCallFailsInEveryWay) {
  std::size_t happened = 0;
  for (const faults::Question& question : faults::allQuestions())
    happened += failEveryCall(*world_, question);
  EXPECT_GT(happened, 1000U);
}

/// The operations that may run Korval code; no other one does.
const std::set<std::string> runners{"KCOSIntrospection::callFunctionOnObject",
                                    "KCOSIntrospection::getObjectPropertyNames",
                                    "KCOSContextData::getKCOSAllNamespaces",
                                    "getMethodsForWSVariable",
                                    "EvalcExpSuccessful",
                                    "GetValueFromCurrentWorkspace",
                                    "getSharedProperty",
                                    "getOpaqueObjectProperties",
                                    "getOpaqueObjectMethods",
                                    "getSizeFromKxArray",
                                    "IsPKXPackage",
                                    "PKXContextData::getPackageStrings"};

/// Did the question run code? The log and the guard's record agree.
bool runsCode(embedded::Host& host, const faults::Question& question) {
  faults::Answer answer;
  host.clearCodeRecord();
  host.startLog();
  question.ask(answer);
  const bool ran = embedded::Host::ranKorvalCode(host.takeLog());
  EXPECT_EQ(ran, host.codeRecord().runs > 0) << question.operation;
  return ran;
}

TEST_F(FaultLoop, OnlyTheStatedOperationsRunKorvalCode) {
  std::set<std::string> ran;
  for (const faults::Question& question : faults::allQuestions()) {
    if (runners.contains(question.operation))
      world_->setCodePolicy(embedded::CodePolicy::Allowed);
    else
      trapCode(*world_);
    if (runsCode(*world_, question)) ran.insert(question.operation);
  }
  EXPECT_EQ(ran, runners);
}

TEST_F(FaultLoop, RefusedCodeIsRecordedWhateverTheAnswerIs) {
  std::set<std::string> refused;
  world_->setCodePolicy(embedded::CodePolicy::Refused);
  for (const faults::Question& question : faults::allQuestions()) {
    faults::Answer answer;
    world_->clearCodeRecord();
    try {
      question.ask(answer);
    } catch (const foundation::core::except::Exception& caught) {
      EXPECT_EQ(caught.messageId(), "KORVAL:host:CodeRefused") << question.operation;
    }
    EXPECT_EQ(world_->codeRecord().runs, 0U);
    if (world_->codeRecord().refusals > 0) refused.insert(question.operation);
  }
  EXPECT_EQ(refused, runners);
}

}  // namespace
