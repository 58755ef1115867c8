#pragma once

// The one gate: every operation of the host begins with `enter<Operation::...>(arguments)`. With nothing
// attached that is a load, an increment and a predictable branch; with a log, a fault plan or an interrupt it
// does their work.

#include <atomic>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "host/Names.h"

class kxArray_tag;
struct Kfh_KORVAL_fn;

namespace embedded {

enum class Operation : std::uint16_t {
#define OPERATION(identifier, name, rule) identifier,
#include "embedded/host/Operations.def"
#undef OPERATION
};

enum class Rule : std::uint8_t { Checked, LoadTime, Undo, NoThrow, RunsCode };

constexpr Rule ruleOf(Operation operation) {
  constexpr Rule rules[] = {
#define OPERATION(identifier, name, rule) Rule::rule,
#include "embedded/host/Operations.def"
#undef OPERATION
  };
  return rules[static_cast<std::size_t>(operation)];
}

constexpr bool mayThrow(Operation operation) { return ruleOf(operation) != Rule::NoThrow; }

const char* operationName(Operation operation) noexcept;
std::size_t operationCount() noexcept;

/// A call as the log keeps it.
struct LoggedCall {
  Operation operation;
  std::string arguments;
};

/// A fault plan whose operation is known.
struct PlannedFault {
  bool anyOperation = true;
  Operation operation{};
  std::uint64_t callsToGo = 1;
  bool andLater = false;
  std::function<void()> raise;
  bool happened = false;
};

// How arguments look in a log; the object that is asked comes first.
std::string logged(const std::string& text);
std::string logged(const std::u16string& text);
std::string logged(const char* text);
std::string logged(const kcos::COSInternedName& name);
std::string logged(bool value);
std::string logged(int value);
std::string logged(unsigned long value);
std::string logged(const kxArray_tag* value);
std::string logged(const Kfh_KORVAL_fn* function);
template <class Other>
std::string logged(const Other*) = delete;  // would be logged as a yes

class Gate {
 public:
  /// Reasons for an operation to stop at the gate.
  enum Attention : unsigned { Logging = 1, Fault = 2, Interrupt = 4 };

  std::uint64_t callCount() const noexcept { return calls_; }
  void count() noexcept { ++calls_; }
  bool isLogging() const noexcept { return (attention_.load(std::memory_order_relaxed) & Logging) != 0; }
  bool wantsAttention() const noexcept { return attention_.load(std::memory_order_relaxed) != 0; }

  void requestInterrupt() noexcept { attention_.fetch_or(Interrupt, std::memory_order_relaxed); }
  void clearInterrupt() noexcept { attention_.fetch_and(~unsigned{Interrupt}, std::memory_order_relaxed); }
  bool interruptRequested() const noexcept {
    return (attention_.load(std::memory_order_relaxed) & Interrupt) != 0;
  }

  void startLog();
  std::vector<LoggedCall> takeLog();
  void setFault(PlannedFault fault);
  bool clearFault();

  const std::optional<HostFailure>& failure() const noexcept { return failure_; }
  void clearFailure() noexcept { failure_.reset(); }
  /// The first one is kept.
  void noteFailure(Operation operation, const std::string& message, bool isInterrupt = false);

  /// The slow half of enter(): logs the call, then raises what is due.
  void attend(Operation operation, std::initializer_list<std::string> arguments);

 private:
  void log(Operation operation, std::initializer_list<std::string> arguments);
  void raiseFault(Operation operation);
  void noteCurrentException(Operation operation);

  std::uint64_t calls_ = 0;
  std::atomic<unsigned> attention_ = 0;
  std::vector<LoggedCall> log_;
  PlannedFault fault_;
  std::optional<HostFailure> failure_;
};

static_assert(std::atomic<unsigned>::is_always_lock_free,
              "requestInterrupt() must be callable in a signal handler");

/// The gate of the calling thread's active host; null without one.
__attribute__((tls_model("initial-exec"))) extern constinit thread_local Gate* activeGate;

[[noreturn]] void refuseWithoutHost(Operation operation);

template <Operation operation, class... Arguments>
inline void enter(const Arguments&... arguments) noexcept(ruleOf(operation) == Rule::NoThrow) {
  constexpr Rule rule = ruleOf(operation);
  Gate* gate = activeGate;
  if (gate == nullptr) [[unlikely]] {
    if constexpr (rule == Rule::NoThrow || rule == Rule::LoadTime) return;
    refuseWithoutHost(operation);
  }
  gate->count();
  // What cannot fail is logged at most; else it would allocate texts of its arguments while it gives memory back.
  if (rule == Rule::NoThrow ? gate->isLogging() : gate->wantsAttention()) [[unlikely]]
    gate->attend(operation, {logged(arguments)...});
}

}  // namespace embedded
