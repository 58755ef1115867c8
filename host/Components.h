#pragma once

#include "host/Export.h"

namespace Tamsix::KorvalComponents {

class KORVAL_HOST_API ComponentFeature {
 public:
  /// Is component-aware name resolution in force? Asked anew by every query that depends on it; the answer
  /// may change in between. May throw.
  static bool IsOn();
};

}  // namespace Tamsix::KorvalComponents
