#include "embedded/language/Interpreter.h"

#include <algorithm>
#include <utility>

#include "embedded/language/Parser.h"
#include "host/Exceptions.h"

namespace embedded {

namespace {

/// What works on elements goes through the dimensions of each, too.
constexpr std::size_t mostDimensions = 100;
/// A record says what was refused, not how often.
constexpr std::size_t longestRecord = 100;

}  // namespace

void CodeGuard::permit(const std::string& what) {
  if (policy_ == CodePolicy::Refused) {
    ++record_.refusals;
    if (record_.refused.size() < longestRecord) record_.refused.push_back(what);
    if (refusalObserver_) refusalObserver_(what);
    throw foundation::core::except::Exception("KORVAL:host:CodeRefused",
                                              "This session runs no Korval code: " + what + " was refused.");
  }
  ++record_.runs;
  environment_.enterCode(what);
}

void Interpreter::raiseInterrupt() { throw Tamsix::System::InterruptException(); }

void Interpreter::failForSteps() const {
  fail("KORVAL:code:StepLimit", "The code takes more than " + std::to_string(limits.steps) + " steps");
}

void Interpreter::failForSize() const {
  fail("KORVAL:code:SizeLimit",
       "An array would have more than " + std::to_string(limits.elements) + " elements, or such an extent");
}

void Interpreter::requireMemory(std::size_t further) const {
  if (runs_ == 0) return;
  const std::int64_t taken = Value::memoryOfThread() - memoryBefore_;
  // Less than before when the run has dropped older values.
  if (taken + static_cast<std::int64_t>(further) <= static_cast<std::int64_t>(limits.memory)) return;
  fail("KORVAL:code:SizeLimit",
       "The values of the code would take more than " + std::to_string(limits.memory) + " bytes");
}

void Interpreter::checkSize(const Value::Size& size, std::size_t bytesOfElement) {
  if (size.size() > mostDimensions)
    fail("KORVAL:code:SizeLimit",
         "An array would have more than " + std::to_string(mostDimensions) + " dimensions");
  // The extents of an empty array count too: there are loops over each of them.
  if (std::ranges::any_of(size, [this](std::size_t extent) { return extent > limits.elements; }))
    failForSize();
  std::size_t count = std::ranges::find(size, std::size_t{0}) == size.end() ? 1 : 0;
  for (const std::size_t extent : size) {
    // The product may overflow before it is compared.
    if (__builtin_mul_overflow(count, extent, &count) || count > limits.elements) failForSize();
  }
  step(count);
  requireMemory(count * bytesOfElement);
}

void Interpreter::checkCount(std::size_t count) const {
  if (count > limits.elements) failForSize();
}

void Interpreter::fail(const std::string& id, const std::string& message) const {
  CodeError error(id, message, source, at);
  environment.codeFailed(error.failure());
  throw error;
}

const Unit& Interpreter::unitOf(const Routine& routine) {
  // Kept with the text. One that cannot be parsed leaves nothing, and fails again.
  std::shared_ptr<const Unit>& parsed = routine.parsed();
  if (parsed == nullptr) {
    // Long texts take their time, so an interrupt stops the reading too.
    Parser parser(routine.text(), routine.context().name, [this] { obeyInterrupt(); });
    parsed = std::make_shared<Unit>(parser.unit());
  }
  return *parsed;
}

CodeRun::CodeRun(Interpreter& interpreter, const std::string& what) : interpreter_(interpreter) {
  // Before the run is counted: when this throws, no destructor takes the count back.
  interpreter.guard.permit(what);
  // A run inside another one uses up what the outer one may.
  if (interpreter.runs_++ > 0) return;
  interpreter.steps_ = 0;
  interpreter.memoryBefore_ = Value::memoryOfThread();
  interpreter.depth_ = 0;
}

CodeLevel::CodeLevel(Interpreter& interpreter) : interpreter_(interpreter) {
  // Checked before it is counted: a level that is refused has no destructor to leave it.
  if (interpreter.depth_ == interpreter.limits.depth)
    interpreter.fail("KORVAL:code:DepthLimit",
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
