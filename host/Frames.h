#pragma once

// The interpreter's stack of execution frames. The host stores the frames that it is given and hands them
// out; it calls into a frame neither while pushing nor while popping it.

#include <memory>

#include "host/Export.h"

class IExecutionFrame;
class FunctionExecutionFrame;

/// What a FunctionExecutionFrame stands for: a function of the interpreter, borrowed, never released by the
/// frame.
struct Kfh_KORVAL_fn;

namespace Tamsix::orvo {

/// Visits frames of the stack. Slot order: the destructor, then `visitFunctionFrame`.
class KORVAL_HOST_API IFrameVisitor {
 public:
  virtual ~IFrameVisitor();
  virtual void visitFunctionFrame(const FunctionExecutionFrame& frame) = 0;
};

/// Keeps a frame on the stack; destroying it pops the frame.
class KORVAL_HOST_API FrameGuard {
 public:
  virtual ~FrameGuard();
};

/// Pushes a frame, which the caller keeps alive as long as the guard. Never null. May throw, pushing nothing.
KORVAL_HOST_API std::unique_ptr<FrameGuard> pushFrame(const IExecutionFrame* frame);

}  // namespace Tamsix::orvo
