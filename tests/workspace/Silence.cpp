#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/Values.h>

#include <boost/smart_ptr/make_shared.hpp>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>

#include "host/Dispatcher.h"
#include "host/Exceptions.h"
#include "host/Interpreter.h"
#include "host/Streams.h"
#include "tests/workspace/Workspace.h"

namespace {

using namespace workspace;
using matrix::ErrorMode;
using services::io::KLStream;
using Tamsix::System::InterruptException;

constexpr auto ownMode = static_cast<ErrorMode>(0x1234U);

/// Sinks on both streams from before the query, which must get nothing and be on top again afterwards.
class Silence : public Workspace {
 protected:
  Silence() {
    KLStream::KLOut().push(output_);
    KLStream::KLErr().push(errors_);
    matrix::setErrorMode(ownMode);
  }

  void expectSilence(const std::string& what) {
    EXPECT_EQ(matrix::getErrorMode(), ownMode) << what;
    EXPECT_EQ(host_->takeOutput(), u"") << what;
    EXPECT_TRUE(host_->frames().empty()) << what;
    EXPECT_EQ(host_->variableNames(), variables_) << what;
    EXPECT_EQ(folder(), folder_) << what;
    for (KLStream* stream : {&KLStream::KLOut(), &KLStream::KLErr()}) stream->flush();
    EXPECT_EQ(output_->text() + errors_->text(), u"") << what;
    // Now something is printed, to see that these sinks are on top.
    inEvalExpHere(u"disp('mark')");
    KLStream::KLOut().flush();
    EXPECT_EQ(output_->text(), u"mark\n") << what;
    KLStream::KLOut().pop();
    KLStream::KLOut().push(output_ = boost::make_shared<services::io::KLStringSink>());
  }

 private:
  static void inEvalExpHere(const std::u16string& text) {
    inEvalExp(text, 0, nullptr, false, Tamsix::orvo::EvalSource::Query);
  }
  static std::u16string folder() {
    return Kdispatcher::getDispatcher()->GetCurrentWorkingFolder()->get().getLocation().text();
  }

  boost::shared_ptr<services::io::KLStringSink> output_{new services::io::KLStringSink()};
  boost::shared_ptr<services::io::KLStringSink> errors_{new services::io::KLStringSink()};
  std::vector<std::string> variables_ = host_->variableNames();
  std::u16string folder_ = folder();
};

struct Row {
  const char16_t* expression;
  int results;
  bool flag;
  bool answer;
};

TEST_F(Silence, AfterSuccessAndAfterErrors) {
  const Row rows[] = {{u"disp('loud')", 0, false, true},   {u"x", 0, false, true},
                      {u"pump.Loud", 1, false, true},      {u"error('ws:bad', 'text')", 0, false, false},
                      {u"x +", 0, false, false},           {u"disp('loud'); nope", 0, false, false},
                      {u"nope()", 1, true, false},         {u"disp('loud'); x", 1, true, true},
                      {u"disp('loud'); x", 1, false, false}, {u"", 0, false, true}};
  for (const Row& row : rows) {
    kxArray_tag* slot = nullptr;
    EXPECT_EQ(EvalcExpSuccessful(row.expression, row.results, &slot, row.flag), row.answer) << shown(row.expression);
    EXPECT_EQ(makeSharedPtr(slot) != nullptr, row.results == 1 && row.answer) << shown(row.expression);
    expectSilence(shown(row.expression));
  }
  EXPECT_EQ(shownValue(GetValueFromCurrentWorkspace(u"pump(1).Loud")), "4");
  expectSilence("value");
}

TEST_F(Silence, AfterExceptionsAndInterrupts) {
  const auto fail = [&](const std::function<void()>& raise) {
    host_->setFault({"results in their slots", 1, false, raise});
    return [] {
      kxArray_tag* slot = nullptr;
      EvalcExpSuccessful(u"disp('loud'); 1", 0, &slot, true);
    };
  };
  EXPECT_THROW(fail([] { throw InterruptException(); })(), InterruptException);
  expectSilence("interrupt");
  EXPECT_THROW(fail([] { throw std::runtime_error("x"); })(), std::runtime_error);
  expectSilence("exception");
  host_->setFault({"results in their slots", 1, false, [] { throw InterruptException(); }});
  EXPECT_FALSE(GetValueFromCurrentWorkspace(u"s(1).a"));
  expectSilence("swallowed interrupt");
}

TEST_F(Silence, AfterAnInterruptOfEndlessCode) {
  using Clock = std::chrono::steady_clock;
  host_->setCodeLimits({.steps = ~std::uint64_t{0}});
  for (const char16_t* expression : {u"pump.Endless", u"x(pump.Endless)"}) {
    Clock::time_point asked;
    std::thread user([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      asked = Clock::now();
      host_->requestInterrupt();
    });
    EXPECT_FALSE(GetValueFromCurrentWorkspace(expression));
    const Clock::time_point ended = Clock::now();
    user.join();
    EXPECT_LT(ended - asked, std::chrono::milliseconds(100)) << shown(expression);
    EXPECT_TRUE(host_->interruptRequested());
    host_->clearInterrupt();
    expectSilence(shown(expression));
  }
}

TEST_F(Silence, IsPreparedAndUndoneInThisOrder) {
  host_->startLog();
  EvalcExpSuccessful(u"x", 0, nullptr, true);
  std::string order;
  for (const embedded::Call& call : host_->takeLog()) {
    const std::string name = call.operation.substr(call.operation.rfind(':') + 1);
    order += name + (name == "setErrorMode" ? "(" + call.arguments + ") " : " ");
  }
  EXPECT_EQ(order,
            "inValidInterpreterAvailable KLOut push KLErr push getErrorMode setErrorMode(4294967295) inEvalExp Korval "
            "code results in their slots getErrorMode setErrorMode(4660) flush pop flush pop ");
}

TEST_F(Silence, WithoutAnInterpreterNothingIsTouched) {
  host_->setInterpreterAvailable(false);
  host_->startLog();
  kxArray_tag* slot = nullptr;
  EXPECT_FALSE(EvalcExpSuccessful(u"x", 1, &slot, true));
  EXPECT_EQ(slot, nullptr);
  EXPECT_EQ(host_->takeLog().size(), 1U);
  EXPECT_FALSE(GetValueFromCurrentWorkspace(u"x + 1"));
  EXPECT_EQ(shownValue(GetValueFromCurrentWorkspace(u"s.a.b")), "5");
}

TEST_F(Silence, RestoringThatFailsStillPopsTheStreams) {
  host_->setFault({"matrix::setErrorMode", 2, false, [] { throw InterruptException(); }});
  EXPECT_TRUE(EvalcExpSuccessful(u"disp('loud')", 0, nullptr, false));
  EXPECT_TRUE(host_->clearFault());
  EXPECT_EQ(matrix::getErrorMode(), ErrorMode::Silent);
  matrix::setErrorMode(ownMode);
  expectSilence("failed restoring");
}

}  // namespace
