#pragma once

#include <memory>
#include <vector>

#include "host/Frames.h"

namespace embedded {

/// The frames that clients have pushed. It never calls into one.
class FrameStack {
 public:
  std::unique_ptr<Tamsix::orvo::FrameGuard> push(const IExecutionFrame* frame);
  /// Innermost first.
  std::vector<const IExecutionFrame*> frames() const { return {frames_->rbegin(), frames_->rend()}; }

 private:
  using Frames = std::vector<const IExecutionFrame*>;
  class Guard;

  // Shared with the guards, which may outlive the session.
  std::shared_ptr<Frames> frames_ = std::make_shared<Frames>();
};

}  // namespace embedded
