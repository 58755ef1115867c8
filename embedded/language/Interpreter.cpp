#include "embedded/language/Interpreter.h"

#include <utility>

#include "embedded/host/Session.h"

namespace embedded {

namespace {

constexpr std::uint64_t elementsOfStep = 8;

}  // namespace

bool Interpreter::interruptRequested() noexcept { return activeGate->interruptRequested(); }

void Interpreter::raiseInterrupt() { throw Tamsix::System::InterruptException(); }

void Interpreter::failForSteps() {
  failCode("KORVAL:code:StepLimit", "The code takes more than " + std::to_string(limits.steps) + " steps");
}

void Interpreter::checkSize(const Value::Size& size) {
  std::size_t count = 1;
  for (const std::size_t extent : size) {
    if (__builtin_mul_overflow(count, extent, &count) || count > limits.elements)
      failCode("KORVAL:code:SizeLimit",
               "An array would have more than " + std::to_string(limits.elements) + " elements");
  }
  step(count / elementsOfStep);
}

void failCode(const std::string& id, const std::string& message) {
  const Interpreter& interpreter = session().interpreter;
  throw CodeError(id, message, interpreter.source, interpreter.at);
}

CodeRun::CodeRun(Session& session, const std::string& what) : session_(session) {
  session.interpreter.guard.permit(what);
  if (session.interpreter.runs_++ > 0) return;
  session.interpreter.steps_ = 0;
  session.interpreter.depth_ = 0;
}

CodeRun::~CodeRun() { --session_.interpreter.runs_; }

CodeLevel::CodeLevel(Interpreter& interpreter) : interpreter_(interpreter) {
  if (interpreter.depth_ == interpreter.limits.depth)
    failCode("KORVAL:code:DepthLimit",
             "The code nests deeper than " + std::to_string(interpreter.limits.depth) + " levels");
  ++interpreter.depth_;
}

CodeSource::CodeSource(Interpreter& interpreter, const std::string& source)
    : interpreter_(interpreter),
      source_(std::exchange(interpreter.source, source)),
      at_(std::exchange(interpreter.at, Position())) {}

CodeSource::~CodeSource() {
  interpreter_.source = std::move(source_);
  interpreter_.at = at_;
}

}  // namespace embedded
