#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/LegacyPackages.h>

#include "contextdata/internal/ResultSlot.h"

bool IsPKXPackage(const std::u16string& name) {
  ResultSlot result;
  if (!EvalcExpSuccessful(u"isa(findpackage('" + name + u"'), 'opaque');", 1, result.address(), true))
    return false;
  return result.get() != nullptr && kxIsLogicalScalarTrue(result.get());
}
