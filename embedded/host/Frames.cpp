#include "embedded/host/Frames.h"

#include <algorithm>

#include "embedded/host/Session.h"

namespace embedded {

class FrameStack::Guard final : public Tamsix::orvo::FrameGuard {
 public:
  Guard(std::shared_ptr<Frames> frames, const IExecutionFrame* frame)
      : frames_(std::move(frames)), frame_(frame) {
    frames_->push_back(frame);
  }

  ~Guard() override {
    enter<Operation::popFrame>();
    // Not simply the last one: guards of a client need not go in the order in which they came.
    const auto innermost = std::find(frames_->rbegin(), frames_->rend(), frame_);
    if (innermost != frames_->rend()) frames_->erase(std::next(innermost).base());
  }

 private:
  std::shared_ptr<Frames> frames_;
  const IExecutionFrame* frame_;
};

std::unique_ptr<Tamsix::orvo::FrameGuard> FrameStack::push(const IExecutionFrame* frame) {
  return std::make_unique<Guard>(frames_, frame);
}

}  // namespace embedded

namespace Tamsix::orvo {

IFrameVisitor::~IFrameVisitor() = default;
FrameGuard::~FrameGuard() = default;

std::unique_ptr<FrameGuard> pushFrame(const IExecutionFrame* frame) {
  return embedded::asked<embedded::Operation::pushFrame>().answer(
      [frame] { return embedded::session().frames.push(frame); });
}

}  // namespace Tamsix::orvo
