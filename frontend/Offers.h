#pragma once

// What is offered at a position: what completion shows, and what an explanation compares.

#include <cstddef>

#include "frontend/Completion.h"
#include "frontend/CursorContext.h"
#include "frontend/RequestContext.h"

namespace frontend {

struct Wanted {
  std::size_t limit = 0;
  /// Names, kinds and order alone are much quicker.
  bool details = true;
};

/// Fills in all but the outcome. When it is stopped, or fails, what it has found so far is there.
void offerAt(RequestContext& request, CursorContext context, const Wanted& wanted, Completion& completion);

}  // namespace frontend
