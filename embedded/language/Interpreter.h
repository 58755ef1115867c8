#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/CodePolicy.h"
#include "embedded/Outline.h"
#include "embedded/language/CodeError.h"
#include "embedded/language/CodeFiles.h"
#include "embedded/model/World.h"
#include "host/Arrays.h"

namespace embedded {

using Values = std::vector<ValuePtr>;

/// What code that runs needs besides the world: the session around it, which the language knows by this only.
class CodeEnvironment {
 public:
  virtual bool interruptRequested() const noexcept = 0;
  /// Code begins to run that is named so. May throw what the operations of a host throw.
  virtual void enterCode(const std::string& what) = 0;
  virtual void print(std::u16string_view text) = 0;
  /// An error of code is on its way to whoever has it run.
  virtual void codeFailed(const CodeFailure& failure) = 0;

 protected:
  ~CodeEnvironment() = default;
};

/// Whoever runs Korval code asks here first.
class CodeGuard {
 public:
  explicit CodeGuard(CodeEnvironment& environment) : environment_(environment) {}

  /// Counts the run of what is named, or raises "KORVAL:host:CodeRefused".
  void permit(const std::string& what);

  void setPolicy(CodePolicy policy) noexcept { policy_ = policy; }
  /// Called before code is refused.
  void setRefusalObserver(std::function<void(const std::string& what)> observer) {
    refusalObserver_ = std::move(observer);
  }
  const CodeRecord& record() const noexcept { return record_; }
  void clearRecord() { record_ = {}; }
  /// Kept when it is the first one.
  void noteFailure(const CodeFailure& failure) {
    if (!record_.failure) record_.failure = failure;
  }

 private:
  CodeEnvironment& environment_;
  CodePolicy policy_ = CodePolicy::Allowed;
  CodeRecord record_;
  std::function<void(const std::string& what)> refusalObserver_;
};

/// What runs Korval code for a session: the guard before it, the limits around it, and where it is.
class Interpreter {
 public:
  Interpreter(const Description& description, World& ownWorld, CodeEnvironment& around)
      : world(ownWorld), environment(around), guard(around), files(description, *this) {}
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  /// So many steps: obeys the interrupt, and while code runs the limits of steps and of memory. Work on n elements is n
  /// steps, counted before it begins.
  void step(std::uint64_t count = 1) {
    obeyInterrupt();
    if (runs_ == 0) return;
    if ((steps_ += count) > limits.steps) failForSteps();
    requireMemory(0);
  }
  /// Obeys the interrupt now and then in a loop over elements, whose steps are counted already.
  void pollAt(std::size_t index) const {
    if (index % 8192 == 0) obeyInterrupt();
  }
  /// Before an array is made, or a text, which is {length}: refuses one beyond the limits, also an empty one with an
  /// extent beyond them, in whatever order its extents stand. The others cost a step for each element.
  void checkSize(const Value::Size& size, std::size_t bytesOfElement = sizeof(double));
  /// Before so many further bytes are taken.
  void requireMemory(std::size_t further) const;
  /// Before a list of so many values is made, which costs no steps by itself.
  void checkCount(std::size_t count) const;

  /// An error of the code that runs, at the place where it is.
  [[noreturn]] void fail(const std::string& id, const std::string& message) const;

  /// The routine's text, parsed at its first use; throws CodeError.
  const Unit& unitOf(const Routine& routine);

  World& world;
  CodeEnvironment& environment;
  CodeGuard guard;
  CodeLimits limits;
  CodeFiles files;
  matrix::ErrorMode errorMode{};
  std::optional<CodeFailure> lastFailure;
  /// Where the code is that runs: what errors name.
  std::string source;
  Position at;

 private:
  friend class CodeRun;
  friend class CodeLevel;

  void obeyInterrupt() const {
    if (environment.interruptRequested()) raiseInterrupt();
  }
  [[noreturn]] static void raiseInterrupt();
  [[noreturn]] void failForSteps() const;
  [[noreturn]] void failForSize() const;
  std::int64_t memoryBefore_ = 0;
  std::uint64_t steps_ = 0;
  std::size_t depth_ = 0;
  std::size_t runs_ = 0;
};

/// Code runs on behalf of a client for as long as this lives. The limits count from the outermost run.
class CodeRun {
 public:
  CodeRun(Interpreter& interpreter, const std::string& what);
  ~CodeRun() { --interpreter_.runs_; }
  CodeRun(const CodeRun&) = delete;
  CodeRun& operator=(const CodeRun&) = delete;

 private:
  Interpreter& interpreter_;
};

/// One level deeper: an expression inside another, a call inside another.
class CodeLevel {
 public:
  explicit CodeLevel(Interpreter& interpreter);
  ~CodeLevel() { --interpreter_.depth_; }
  CodeLevel(const CodeLevel&) = delete;
  CodeLevel& operator=(const CodeLevel&) = delete;

 private:
  Interpreter& interpreter_;
};

/// The text in which the code is from now on; gives back the place before.
class CodeSource {
 public:
  CodeSource(Interpreter& interpreter, const std::string& source);
  ~CodeSource();
  CodeSource(const CodeSource&) = delete;
  CodeSource& operator=(const CodeSource&) = delete;

 private:
  Interpreter& interpreter_;
  std::string source_;
  Position at_;
};

}  // namespace embedded
