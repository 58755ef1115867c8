#pragma once

// Frames by which the interpreter's frame visitors see what is done on behalf of the library's clients. No
// query of the library makes one.

#include <contextdata/Export.h>

#include <memory>

#include "host/Frames.h"

struct Kfh_KORVAL_fn;

/// A frame that a visitor can reach. Slot order: the destructor, then `accept`.
class CONTEXTDATA_API IExecutionFrame {
 public:
  virtual ~IExecutionFrame();
  /// Calls the visitor's operation for this kind of frame, with this frame. What that throws propagates.
  virtual void accept(Tamsix::orvo::IFrameVisitor& visitor) const = 0;
};

/// A frame that is on the interpreter's frame stack exactly as long as it lives, also while an exception
/// unwinds. What pushing throws propagates; then there is no frame.
class CONTEXTDATA_API AutoPushingExecutionFrame : public IExecutionFrame {
 public:
  ~AutoPushingExecutionFrame() override;
  AutoPushingExecutionFrame(const AutoPushingExecutionFrame&) = delete;
  AutoPushingExecutionFrame& operator=(const AutoPushingExecutionFrame&) = delete;

 protected:
  AutoPushingExecutionFrame();

 private:
  std::unique_ptr<Tamsix::orvo::FrameGuard> guard_;
};

/// The call of one function. The function is borrowed and outlives the frame.
class CONTEXTDATA_API FunctionExecutionFrame : public AutoPushingExecutionFrame {
 public:
  explicit FunctionExecutionFrame(const Kfh_KORVAL_fn* function);
  ~FunctionExecutionFrame() override;

  void accept(Tamsix::orvo::IFrameVisitor& visitor) const override;

  const Kfh_KORVAL_fn* function() const noexcept { return function_; }

 private:
  const Kfh_KORVAL_fn* function_;
};
