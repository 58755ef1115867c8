#pragma once

// The one gate: every operation of the host is `return asked<Operation::...>(arguments).answer([..] { ... });`, and one
// that has no answer may begin with `enter<Operation::...>(arguments);` instead. With nothing attached that is six
// instructions: load, compare, a branch that is not taken, and an increment. With a log, a fault plan or an interrupt the work
// is done out of line, where also the arguments are looked at first: so a body captures pointers and numbers by value, or they
// would have to stand in memory for that.

#include <atomic>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "embedded/Host.h"
#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/DataTypes.h"
#include "host/Dispatcher.h"
#include "host/Files.h"
#include "host/Frames.h"
#include "host/FunctionMetadata.h"
#include "host/Interpreter.h"
#include "host/SearchPath.h"

namespace embedded {

class MemberText;

enum class Operation : std::uint16_t {
#define OPERATION(identifier, name, rule, type) identifier,
#include "embedded/host/Operations.def"
#undef OPERATION
};

enum class Rule : std::uint8_t { Checked, LoadTime, Undo, NoThrow, RunsCode };

constexpr Rule ruleOf(Operation operation) {
  constexpr Rule rules[] = {
#define OPERATION(identifier, name, rule, type) Rule::rule,
#include "embedded/host/Operations.def"
#undef OPERATION
  };
  return rules[static_cast<std::size_t>(operation)];
}

constexpr bool mayThrow(Operation operation) { return ruleOf(operation) != Rule::NoThrow; }

/// In the place of an operation's type of answer: no plan can replace it.
struct Fixed {};

template <Operation>
struct TypeOf;
#define OPERATION(identifier, name, rule, answer) \
  template <>                                     \
  struct TypeOf<Operation::identifier> {          \
    using type = answer;                          \
  };
#include "embedded/host/Operations.def"
#undef OPERATION

const char* operationName(Operation operation) noexcept;
std::size_t operationCount() noexcept;

/// A call as the log keeps it.
struct LoggedCall {
  Operation operation;
  std::string arguments;
};

/// A fault plan that has been checked.
struct PlannedFault {
  /// None: any operation.
  std::optional<Operation> operation;
  std::uint64_t callsToGo = 1;
  bool andLater = false;
  std::function<void()> raise;
  std::string argument;
  std::shared_ptr<const PlannedAnswer> answer;
  bool happened = false;
};

/// An argument of a call as it waits for a log. Nothing of it is looked at before somebody wants its text.
class Argument {
 public:
  Argument(bool value) : value_(value) {}
  Argument(int value) : value_(value) {}
  Argument(unsigned long value) : value_(value) {}
  Argument(const char* text) : value_(text) {}
  Argument(const std::string& text) : value_(&text) {}
  Argument(const std::u16string& text) : value_(&text) {}
  Argument(const kcos::COSInternedName& name) : value_(&name) {}
  Argument(const MemberText& name) : value_(&name) {}
  Argument(const kxArray_tag* value) : value_(value) {}
  Argument(const Kfh_KORVAL_fn* function) : value_(function) {}
  template <class Other>
  Argument(const Other*) = delete;  // would be logged as a yes

  /// How it looks in a log.
  std::string text() const;

 private:
  std::variant<bool, int, unsigned long, const char*, const std::string*, const std::u16string*,
               const kcos::COSInternedName*, const MemberText*, const kxArray_tag*, const Kfh_KORVAL_fn*>
      value_;
};

using Arguments = std::initializer_list<Argument>;

/// What every operation looks at first.
struct Entrance {
  std::uint64_t calls = 0;
  /// Of Attention.
  std::atomic<unsigned> attention = 0;
};

/// Reasons for an operation to stop at the gate.
enum Attention : unsigned { Logging = 1, Fault = 2, Interrupt = 4, NoHost = 8 };

class Gate : public Entrance {
 public:
  std::uint64_t callCount() const noexcept { return calls; }

  void requestInterrupt() noexcept { attention.fetch_or(Interrupt, std::memory_order_relaxed); }
  void clearInterrupt() noexcept { attention.fetch_and(~unsigned{Interrupt}, std::memory_order_relaxed); }
  bool interruptRequested() const noexcept {
    return (attention.load(std::memory_order_relaxed) & Interrupt) != 0;
  }

  void startLog();
  std::vector<LoggedCall> takeLog();
  void setFault(PlannedFault fault);
  bool clearFault();

  const std::optional<HostFailure>& failure() const noexcept { return failure_; }
  void clearFailure() noexcept { failure_.reset(); }
  /// The first one is kept.
  void noteFailure(Operation operation, const std::string& message, bool isInterrupt = false);

  /// Counts and logs the call, then raises what is due. Returns the answer that is planned for it, or null.
  const PlannedAnswer* attend(Operation operation, Arguments arguments);

 private:
  bool isDue(Operation operation, Arguments arguments);
  void raiseFault(Operation operation);
  void noteCurrentException(Operation operation);

  std::vector<LoggedCall> log_;
  PlannedFault fault_;
  /// Of all plans: what an answer does while it is asked may set or drop the plan.
  std::vector<std::shared_ptr<const PlannedAnswer>> answers_;
  std::optional<HostFailure> failure_;
};

static_assert(std::atomic<unsigned>::is_always_lock_free,
              "requestInterrupt() must be callable in a signal handler");

/// Where a thread without an active host enters. It always wants attention, so that nobody has to ask first whether there is
/// a host, and is never written to: all threads share it.
extern constinit Entrance withoutHost;

/// The gate of the calling thread's active host.
__attribute__((tls_model("initial-exec"))) extern constinit thread_local Entrance* activeGate;

[[noreturn]] void refuseWithoutHost(Operation operation);

template <Operation operation>
constexpr bool isFixed = std::is_same_v<typename TypeOf<operation>::type, Fixed>;

/// How an argument comes to the gate.
template <class T>
using Kept = std::conditional_t<std::is_scalar_v<T>, T, const T&>;

/// The operation where something wants attention. Not inlined, so that its frame is not that of every operation.
template <Operation operation, class Answer, class Body, class... Kinds>
[[gnu::cold, gnu::noinline]] Answer attended(Body body,
                                             Kept<Kinds>... arguments) noexcept(ruleOf(operation) ==
                                                                                Rule::NoThrow) {
  constexpr Rule rule = ruleOf(operation);
  if (activeGate == &withoutHost) {
    if constexpr (rule == Rule::NoThrow || rule == Rule::LoadTime) return body();
    refuseWithoutHost(operation);
  }
  const PlannedAnswer* answer = static_cast<Gate&>(*activeGate).attend(operation, {arguments...});
  if constexpr (isFixed<operation>) {
    return body();
  } else {
    // The type was checked when the plan was set.
    const auto* plan = static_cast<const PlannedAnswerOf<Answer>*>(answer);
    if (plan != nullptr && plan->instead) return plan->instead();
    if constexpr (std::is_void_v<Answer>) {
      return body();
    } else {
      Answer own = body();
      if (plan == nullptr) return own;
      return plan->changed(std::move(own));
    }
  }
}

/// An operation and its arguments at the gate.
template <Operation operation, class... Kinds>
class Asked {
 public:
  explicit Asked(Kept<Kinds>... arguments) noexcept : arguments_(arguments...) {}

  template <class Body>
  [[gnu::always_inline]] decltype(auto) answer(const Body& body) const
      noexcept(ruleOf(operation) == Rule::NoThrow) {
    using Answer =
        std::conditional_t<isFixed<operation>, std::invoke_result_t<Body>, typename TypeOf<operation>::type>;
    Entrance& gate = *activeGate;
    if (gate.attention.load(std::memory_order_relaxed) != 0) [[unlikely]]
      return std::apply(
          [&](Kept<Kinds>... arguments) -> Answer {
            return attended<operation, Answer, Body, Kinds...>(body, arguments...);
          },
          arguments_);
    ++gate.calls;
    return static_cast<Answer>(body());
  }

 private:
  std::tuple<Kept<Kinds>...> arguments_;
};

template <Operation operation, class... Kinds>
[[gnu::always_inline]] inline Asked<operation, Kinds...> asked(const Kinds&... arguments) noexcept {
  return Asked<operation, Kinds...>(arguments...);
}

template <Operation operation, class... Kinds>
[[gnu::always_inline]] inline void enter(const Kinds&... arguments) noexcept(ruleOf(operation) ==
                                                                             Rule::NoThrow) {
  asked<operation>(arguments...).answer([] {});
}

}  // namespace embedded
