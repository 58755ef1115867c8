#include "embedded/host/ActiveScope.h"

#include "embedded/host/Gate.h"

namespace embedded {

bool ActiveScope::isEligible() const {
  enter<Operation::scopeIsEligible>(function_);
  return eligible_;
}

const Kfh_KORVAL_fn* ActiveScope::getFunction() const {
  enter<Operation::scopeGetFunction>(function_);
  return function_;
}

const KactiveScope* ActiveScope::getNext() const {
  enter<Operation::scopeGetNext>(function_);
  return next_;
}

}  // namespace embedded

KactiveScope::~KactiveScope() = default;
