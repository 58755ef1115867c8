#pragma once

#include <optional>
#include <string>
#include <vector>

#include "embedded/language/CodeError.h"
#include "embedded/language/CodeFiles.h"
#include "embedded/language/CodeGuard.h"
#include "embedded/model/Value.h"
#include "host/Arrays.h"

namespace embedded {

struct Session;
using Values = std::vector<ValuePtr>;

/// What runs Korval code for a session: the guard before it, the limits around it, and where it is.
class Interpreter {
 public:
  explicit Interpreter(const Description& description) : files(description) {}

  /// One step: obeys the interrupt, and while code runs the limit of steps.
  void step(std::uint64_t count = 1) {
    if (interruptRequested()) raiseInterrupt();
    if (runs_ > 0 && (steps_ += count) > limits.steps) failForSteps();
  }
  /// Obeys the interrupt now and then in a loop over elements.
  void pollAt(std::size_t index) {
    if (index % 8192 == 0) step();
  }
  /// Refuses arrays of more elements than the limit; the others cost steps.
  void checkSize(const Value::Size& size);

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

  static bool interruptRequested() noexcept;
  [[noreturn]] static void raiseInterrupt();
  [[noreturn]] void failForSteps();

  std::uint64_t steps_ = 0;
  std::size_t depth_ = 0;
  std::size_t runs_ = 0;
};

/// An error of the code that runs, at the place where it is.
[[noreturn]] void failCode(const std::string& id, const std::string& message);

/// Code runs on behalf of a client for as long as this lives. The limits count from the outermost run.
class CodeRun {
 public:
  CodeRun(Session& session, const std::string& what);
  ~CodeRun();
  CodeRun(const CodeRun&) = delete;
  CodeRun& operator=(const CodeRun&) = delete;

 private:
  Session& session_;
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
