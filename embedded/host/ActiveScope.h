#pragma once

#include "host/Dispatcher.h"

namespace embedded {

class ActiveScope final : public KactiveScope {
 public:
  ActiveScope(const Kfh_KORVAL_fn* function, bool eligible, const ActiveScope* next)
      : function_(function), eligible_(eligible), next_(next) {}

  bool isEligible() const override;
  const Kfh_KORVAL_fn* getFunction() const override;
  const KactiveScope* getNext() const override;

 private:
  const Kfh_KORVAL_fn* function_;
  bool eligible_;
  const ActiveScope* next_;
};

}  // namespace embedded
