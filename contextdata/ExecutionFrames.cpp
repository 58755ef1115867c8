#include <contextdata/Workspace/ExecutionFrames.h>

IExecutionFrame::~IExecutionFrame() = default;

// Pushed while the frame is still being made: a host keeps the pointer and calls nothing of it before that is
// done.
AutoPushingExecutionFrame::AutoPushingExecutionFrame() : guard_(Tamsix::orvo::pushFrame(this)) {}

AutoPushingExecutionFrame::~AutoPushingExecutionFrame() = default;

FunctionExecutionFrame::FunctionExecutionFrame(const Kfh_KORVAL_fn* function) : function_(function) {}

FunctionExecutionFrame::~FunctionExecutionFrame() = default;

void FunctionExecutionFrame::accept(Tamsix::orvo::IFrameVisitor& visitor) const {
  visitor.visitFunctionFrame(*this);
}
