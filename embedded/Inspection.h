#pragma once

// What an embedded host tells about itself, and what can be planned for it: for tests that hold a client against the
// calls it makes, the faults it meets and the references it keeps. Of a user's tools only a trace of calls needs it.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "host/Export.h"

namespace embedded {

struct Session;

/// One call of a host operation: its qualified name, and its arguments as text.
struct Call {
  std::string operation;
  std::string arguments;
};

/// An answer that a plan gives in the place of an operation's own. Made by answering().
struct PlannedAnswer {
  virtual ~PlannedAnswer() = default;
  virtual const std::type_info& type() const noexcept = 0;
};

/// For operations that return T. Of the two functions one is there: the second is given the operation's own answer.
template <class T>
struct PlannedAnswerOf final : PlannedAnswer {
  std::function<T()> instead;
  std::function<T(std::conditional_t<std::is_void_v<T>, std::nullptr_t, T>)> changed;

  const std::type_info& type() const noexcept override { return typeid(T); }
};

/// An answer by a function that returns it. It is called in the operation's place, or, when it takes an argument, with the
/// operation's own answer:
///   {.operation = "inEvalExp", .answer = embedded::answering([] { return 7; })}
/// What it returns is the caller's as the operation's own answer would be, references too.
template <class Function>
std::shared_ptr<const PlannedAnswer> answering(Function function) {
  using T = typename decltype(std::function(function))::result_type;
  auto answer = std::make_shared<PlannedAnswerOf<T>>();
  if constexpr (std::is_invocable_v<Function>)
    answer->instead = std::move(function);
  else
    answer->changed = std::move(function);
  return answer;
}

/// A fault to happen at a call of a host operation: what it throws, or what it answers instead of its own answer. Only
/// operations that may throw are counted.
struct FaultPlan {
  /// The operation's qualified name, as a log shows it; empty: any operation.
  std::string operation = {};
  /// At which call, counted from 1 and from the moment the plan is set.
  std::uint64_t call = 1;
  /// At every later call too.
  bool andLater = false;
  /// Throws. Empty when there is an answer.
  std::function<void()> raise = {};
  /// Counts only calls with this among their arguments, as a log shows it, texts also without their quotes ("lab.Pump"; the
  /// object that is asked is the first argument); empty: any call.
  std::string argument = {};
  /// Of the very type that the operation returns. It makes no failure(), as what is raised does.
  std::shared_ptr<const PlannedAnswer> answer = {};
};

/// All values of the process: how many there are, and how many references were added and dropped so far (a
/// new value counts as one added).
struct ReferenceAudit {
  std::int64_t values = 0;
  std::uint64_t added = 0;
  std::uint64_t dropped = 0;
};

/// The part of every Host that is for inspection.
class KORVAL_HOST_API Inspection {
 public:
  Inspection(const Inspection&) = delete;
  Inspection& operator=(const Inspection&) = delete;

  /// Calls of all operations so far.
  std::uint64_t callCount() const noexcept;
  /// Starts a new log of calls.
  void startLog();
  /// Ends the log and returns it; empty when none was started.
  std::vector<Call> takeLog();
  /// Of the calls of a log, did one run Korval code?
  static bool ranKorvalCode(const std::vector<Call>& log);

  /// Sets the one fault plan; a std::invalid_argument says which part of it can never happen. It is spent when its fault has
  /// happened, unless it says otherwise.
  void setFault(FaultPlan plan);
  /// Drops the plan; returns whether its fault has happened.
  bool clearFault();
  /// The names of all operations that a plan may name.
  static std::vector<std::string> faultyOperations();

  /// Called with what is refused whenever the policy refuses Korval code, before the error: a test that proves that
  /// nothing runs may end its process here. Empty: nothing is called.
  void setRefusalObserver(std::function<void(const std::string& what)> observer);

  static ReferenceAudit references() noexcept;

 protected:
  explicit Inspection(std::unique_ptr<Session> session);
  ~Inspection();

  std::unique_ptr<Session> session_;
};

}  // namespace embedded
