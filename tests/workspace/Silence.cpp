#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/Values.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>

#include "host/Exceptions.h"
#include "host/Streams.h"
#include "tests/support/State.h"
#include "tests/workspace/Workspace.h"

namespace {

using namespace workspace;
using matrix::ErrorMode;
using Tamsix::System::InterruptException;

/// How an evaluation that has printed ends, and what becomes of it.
struct Ending {
  const char* name;
  const char16_t* expression;
  std::function<void()> raise;
  std::string outcome;
};

const Ending endings[] = {
    {"success", u"disp('loud'); x", [] {}, "true 5"},
    {"no value", u"disp('loud')", [] {}, "false nothing"},
    {"error", u"disp('loud'); error('ws:bad', 'text')", [] {}, "false nothing"},
    {"syntax", u"disp('loud'); x +", [] {}, "false nothing"},
    {"getter", u"pump.Loud", [] {}, "true 4"},
    {"interrupt", u"disp('loud'); x", [] { throw InterruptException(); }, "interrupt"},
    {"exception", u"disp('loud'); x", [] { throw std::runtime_error("x"); }, "exception"}};

constexpr const char* inside = "results in their slots";

class Silence : public Workspace {
 protected:
  /// What `during` does happens when the evaluation has run its code, before the host's raising.
  std::string evaluate(
      const Ending& ending, const std::function<void()>& during = [] {}) {
    kxArray_tag* slot = nullptr;
    if (std::string(ending.outcome) != "false nothing")
      host_->setFault({inside, 1, false, [&] {
                         during();
                         ending.raise();
                       }});
    try {
      const bool answer = EvalcExpSuccessful(ending.expression, 1, &slot, true);
      return shown(answer) + " " + shownValue(makeSharedPtr(slot));
    } catch (const InterruptException&) {
      makeSharedPtr(slot);
      return "interrupt";
    } catch (const std::runtime_error&) {
      makeSharedPtr(slot);
      return "exception";
    }
  }
};

TEST_F(Silence, SurroundsEveryEndingAndEveryEndingInsideIt) {
  for (const Ending& outer : endings)
    for (const Ending& inner : endings) {
      SCOPED_TRACE(std::string(outer.name) + " around " + inner.name);
      const State state(*host_);
      std::string nested = inner.outcome;
      EXPECT_EQ(evaluate(outer, [&] { nested = evaluate(inner); }), outer.outcome);
      EXPECT_EQ(nested, inner.outcome);
      host_->clearFault();
      state.expectUnchanged();
    }
}

TEST_F(Silence, LastsWhenRestoringFails) {
  for (const char* operation : {"matrix::getErrorMode", "matrix::setErrorMode"})
    for (const auto& raise : {std::function<void()>([] { throw InterruptException(); }),
                              std::function<void()>([] { throw 42; })}) {
      const State state(*host_, operation);
      host_->setFault({operation, 2, false, raise});
      kxArray_tag* slot = nullptr;
      EXPECT_TRUE(EvalcExpSuccessful(u"disp('loud'); x", 1, &slot, true)) << operation;
      EXPECT_EQ(shownValue(makeSharedPtr(slot)), "5");
      EXPECT_TRUE(host_->clearFault());
      EXPECT_EQ(matrix::getErrorMode(), ErrorMode::Silent);
      state.expectUnchanged();
    }
}

TEST_F(Silence, LastsWhenTheSecondSinkCannotBePushed) {
  const State state(*host_);
  host_->setFault({"services::io::KLStream::push", 2, false, [] { throw 42; }});
  EXPECT_THROW(EvalcExpSuccessful(u"disp('loud')", 0, nullptr, false), int);
  state.expectUnchanged();
  EXPECT_FALSE(GetValueFromCurrentWorkspace(u"s(1).gone"));
}

TEST_F(Silence, LastsThroughAnInterruptOfEndlessCode) {
  host_->setCodeLimits({.steps = ~std::uint64_t{0}});
  for (const char16_t* expression : {u"pump.Endless", u"x(pump.Endless)"}) {
    const State state(*host_);
    std::thread user([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));  // mostly, the code runs by then
      host_->requestInterrupt();
    });
    EXPECT_FALSE(GetValueFromCurrentWorkspace(expression));
    user.join();
    EXPECT_TRUE(host_->interruptRequested());
    host_->clearInterrupt();
    state.expectUnchanged();
  }
}

TEST_F(Silence, IsPreparedAndUndoneInThisOrder) {
  const State state(*host_);
  host_->startLog();
  EvalcExpSuccessful(u"x", 0, nullptr, true);
  std::string order;
  for (const embedded::Call& call : host_->takeLog()) {
    const std::string name = call.operation.substr(call.operation.rfind(':') + 1);
    order += name + (name == "setErrorMode" ? "(" + call.arguments + ") " : " ");
  }
  EXPECT_EQ(order,
            "inValidInterpreterAvailable KLOut push KLErr push getErrorMode setErrorMode(4294967295) "
            "inEvalExp Korval "
            "code results in their slots getErrorMode setErrorMode(23130) flush pop flush pop ");
  state.expectUnchanged();
}

TEST_F(Silence, WithoutAnInterpreterTouchesNothing) {
  host_->setInterpreterAvailable(false);
  host_->startLog();
  kxArray_tag* slot = nullptr;
  EXPECT_FALSE(EvalcExpSuccessful(u"x", 1, &slot, true));
  EXPECT_EQ(slot, nullptr);
  EXPECT_EQ(host_->takeLog().size(), 1U);
  EXPECT_FALSE(GetValueFromCurrentWorkspace(u"x + 1"));
  EXPECT_EQ(shownValue(GetValueFromCurrentWorkspace(u"s.a.b")), "5");
}

}  // namespace
