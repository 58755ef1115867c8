#include <contextdata/Workspace/ExecutionFrames.h>

#include <optional>

#include "tests/support/Slots.h"
#include "tests/workspace/Workspace.h"

namespace {

using namespace workspace;
using Frames = std::vector<const IExecutionFrame*>;

/// Notes the functions of the frames that it meets.
struct Walk : Tamsix::orvo::IFrameVisitor {
  void visitFunctionFrame(const FunctionExecutionFrame& frame) override {
    met.push_back(&frame);
    functions.push_back(frame.function());
  }
  Frames met;
  std::vector<const Kfh_KORVAL_fn*> functions;
};

class ExecutionFrames : public Workspace {};

TEST_F(ExecutionFrames, AreOnTheStackAsLongAsTheyLive) {
  std::optional<FunctionExecutionFrame> outer(std::in_place, host_->function("plain"));
  {
    const FunctionExecutionFrame inner(nullptr);
    EXPECT_EQ(host_->frames(), (Frames{&inner, &*outer}));
    try {
      const FunctionExecutionFrame unwound(host_->function("ns.f"));
      EXPECT_EQ(host_->frames(), (Frames{&unwound, &inner, &*outer}));
      throw 1;
    } catch (int) {
    }
    EXPECT_EQ(host_->frames(), (Frames{&inner, &*outer}));
    // They need not go in the order of their coming.
    const IExecutionFrame* left = &inner;
    outer.reset();
    EXPECT_EQ(host_->frames(), Frames{left});
  }
  EXPECT_TRUE(host_->frames().empty());
}

TEST_F(ExecutionFrames, AreVisitedAsWhatTheyAre) {
  // No function is at the last one: whoever followed the reference would crash.
  const Kfh_KORVAL_fn *plain = host_->function("plain"),
                      *nowhere = reinterpret_cast<const Kfh_KORVAL_fn*>(0x10);
  const FunctionExecutionFrame outer(plain), middle(nullptr), inner(nowhere);
  Walk walk;
  for (const IExecutionFrame* frame : host_->frames()) frame->accept(walk);
  EXPECT_EQ(walk.met, (Frames{&inner, &middle, &outer}));
  EXPECT_EQ(walk.functions, (std::vector<const Kfh_KORVAL_fn*>{nowhere, nullptr, plain}));
}

TEST_F(ExecutionFrames, MayOutliveTheirHost) {
  std::optional<FunctionExecutionFrame> frame;
  {
    embedded::Host other((embedded::Description()));
    const embedded::Activation active(other);
    frame.emplace(nullptr);
    EXPECT_EQ(other.frames().size(), 1U);
  }
  EXPECT_TRUE(host_->frames().empty());
  frame.reset();
}

TEST_F(ExecutionFrames, HaveTheirOperationsInOrder) {
  EXPECT_EQ(slotOf(&IExecutionFrame::accept), 2);
  EXPECT_EQ(slotOf(&FunctionExecutionFrame::accept), 2);
  EXPECT_EQ(slotOf(&Tamsix::orvo::IFrameVisitor::visitFunctionFrame), 2);
}

}  // namespace
