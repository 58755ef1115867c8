#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

void askMetadata(Answer& answer) {
  const FunctionMetadata metadata = KCOSContextData::getArgumentBlockMetadata(u"lab.tune", u"tune");
  answer.result =
      std::to_string(metadata.flags) + (metadata.inputArguments && metadata.outputArguments ? " both" : "");
}

}  // namespace

std::vector<Question> metadataQuestions() {
  return {{"KCOSContextData::getArgumentBlockMetadata", "", askMetadata, {{"*", passes}}}};
}

}  // namespace faults
