// Frames live for the length of a request, which tells how deep the stack is before, meanwhile and afterwards.

#include <contextdata/Workspace/ExecutionFrames.h>

#include <memory>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

/// A frame of a client's own kind, which no visitor knows.
class PlainFrame final : public AutoPushingExecutionFrame {
 public:
  void accept(Tamsix::orvo::IFrameVisitor&) const override {}
};

/// Keeps what it reaches.
class FunctionVisitor final : public Tamsix::orvo::IFrameVisitor {
 public:
  void visitFunctionFrame(const FunctionExecutionFrame& frame) override { reached = &frame; }

  const FunctionExecutionFrame* reached = nullptr;
};

/// The depth of the stack at each of three moments.
struct Depth {
  explicit Depth(Question& asked) : question(asked), before(now()) {}

  std::size_t now() const { return question.frames().size(); }
  void tell(std::size_t during) const {
    question.tell("depth", std::vector<std::size_t>{before, during, now()});
  }

  Question& question;
  std::size_t before;
};

template <class Make>
void live(Question& question, Make make) {
  const Depth depth(question);
  std::size_t during = depth.before;
  question.ask([&] {
    const auto frame = make();
    during = depth.now();
    return nullptr;
  });
  depth.tell(during);
}

void plainFrame(Question& question) {
  live(question, [] { return std::make_unique<PlainFrame>(); });
}

void functionFrame(Question& question) {
  const Kfh_KORVAL_fn* function = question.arguments.scope("function");
  live(question, [&] { return std::make_unique<FunctionExecutionFrame>(function); });
}

/// The visitor walks to the innermost frame of the stack.
void accept(Question& question) {
  const Arguments& arguments = question.arguments;
  const Kfh_KORVAL_fn* function = arguments.scope("function");
  const Depth depth(question);
  std::size_t during = depth.before;
  FunctionVisitor visitor;
  bool isFunction = false;
  {
    const FunctionExecutionFrame frame(function);
    during = depth.now();
    const IExecutionFrame* innermost = question.frames().front();
    question.ask([&] { return innermost->accept(visitor), nullptr; });
    isFunction = visitor.reached == &frame && visitor.reached->function() == function;
  }
  question.tell("reachedFunction", isFunction);
  depth.tell(during);
}

}  // namespace

std::vector<Operation> frameOperations() {
  return {{"AutoPushingExecutionFrame", plainFrame},
          {"FunctionExecutionFrame", functionFrame},
          {"accept", accept}};
}

}  // namespace tools::query
