// What the gate does: count, log, interrupt and faults.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <thread>

#include "embedded/Host.h"
#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/Exceptions.h"
#include "host/Interpreter.h"
#include "host/Text.h"

namespace {

using embedded::FaultPlan;
using kcos::internal::makeInterned;
using Tamsix::System::InterruptException;

class Gate : public ::testing::Test {
 protected:
  static embedded::Description lab() {
    embedded::Description description;
    description.classes.emplace_back().name = "lab.Pump";
    description.workspace.push_back({"pump", {embedded::ObjectValue{"lab.Pump", {}, ""}}});
    return description;
  }

  /// The log of what `ask` asks, a line for each call.
  template <class Ask>
  std::string logOf(Ask ask) {
    host.startLog();
    ask();
    std::string lines;
    for (const auto& call : host.takeLog()) lines += call.operation + "(" + call.arguments + ")\n";
    return lines;
  }

  /// At which of five look-ups a fault happens, as "x" among dots.
  std::string failingOf(FaultPlan plan) {
    plan.raise = [] { throw 7; };
    host.setFault(std::move(plan));
    std::string result;
    for (int call = 0; call < 5; ++call) {
      try {
        kcos::COSClass::getClass(pump);
        result += '.';
      } catch (int) {
        result += 'x';
      }
    }
    return result;
  }

  embedded::Host host{lab()};
  embedded::Activation active{host};
  const kcos::COSInternedName pump = makeInterned("lab.Pump");
};

TEST_F(Gate, LogsCallsInOrderWithTheObjectThatIsAskedFirst) {
  EXPECT_EQ("kcos::COSClass::getClass(\"lab.Pump\")\nkcos::COSClass::checkClass(\"lab.Pump\", false)\n",
            logOf([&] { kcos::COSClass::getClass(pump)->checkClass(false); }));
  EXPECT_EQ("kcos::COSClass::getClass(null)\nkcos::internal::makeInterned(\"a\\\"\\x00\")\n", logOf([] {
              kcos::COSClass::getClass({});
              makeInterned(std::string("a\"\0", 3));
            }));
  EXPECT_EQ(
      "inGetValueFromCurrentWorkspace(\"pump\")\nkxDropReference(<lab.Pump 1x1>)\n"
      "kcos::nameresolution::omResolveAnyClass(\"x\", null)\nomIsKCOS(null)\n",
      logOf([] {
        kxDropReference(inGetValueFromCurrentWorkspace("pump"));
        kcos::nameresolution::omResolveAnyClass("x", nullptr);
        omIsKCOS(nullptr);
      }));
  kcos::COSClass::getClass(pump);
  EXPECT_TRUE(host.takeLog().empty()) << "nothing is logged after the end of a log";
}

TEST_F(Gate, CountsCallsAndKnowsWhichRunKorvalCode) {
  const auto before = host.callCount();
  for (int call = 0; call < 3; ++call) kcos::COSClass::getClass(pump);
  EXPECT_EQ(before + 3, host.callCount());
  host.startLog();
  kcos::COSClass::getClass(pump);
  EXPECT_FALSE(embedded::Host::ranKorvalCode(host.takeLog()));
}

TEST_F(Gate, AFaultHappensAtItsCallOnceUnlessThePlanSaysOtherwise) {
  const std::string getClass = "kcos::COSClass::getClass";
  struct {
    FaultPlan plan;
    const char* failing;
    bool happened;
  } const rows[] = {
      {{getClass, 1, false, {}}, "x....", true}, {{getClass, 3, false, {}}, "..x..", true},
      {{getClass, 2, true, {}}, ".xxxx", true},  {{getClass, 6, false, {}}, ".....", false},
      {{"", 2, false, {}}, ".x...", true},       {{"omIsKCOS", 1, false, {}}, ".....", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.failing, failingOf(row.plan)) << row.plan.operation << row.plan.call;
    EXPECT_EQ(row.happened, host.clearFault());
  }
  EXPECT_NO_THROW(kcos::COSClass::getClass(pump));
  EXPECT_FALSE(host.clearFault());
}

TEST_F(Gate, OnlyWhatMayThrowIsCountedOrNamed) {
  const auto operations = embedded::Host::faultyOperations();
  EXPECT_GT(operations.size(), 60U);
  EXPECT_EQ(0, std::ranges::count(operations, "kxDropReference"));
  for (const std::string& operation : operations) {
    host.setFault({operation, 1, false, [] {}});
    EXPECT_FALSE(host.clearFault());
  }
  for (const char* wrong : {"kxDropReference", "kcos::COSClass::getclass", "nothing"}) try {
      host.setFault({wrong, 1, false, [] {}});
      ADD_FAILURE() << wrong;
    } catch (const std::invalid_argument& error) {
      EXPECT_NE(nullptr, std::strstr(error.what(), wrong));
    }
  EXPECT_THROW(host.setFault({"", 0, false, [] {}}), std::invalid_argument);
  EXPECT_THROW(host.setFault({"", 1, false, {}}), std::invalid_argument);
  // Answers: of no operation, beside a fault, of what has none, and of another type than the declared one.
  const auto refusal = [&](FaultPlan plan) {
    try {
      host.setFault(std::move(plan));
      return std::string("none");
    } catch (const std::invalid_argument& error) {
      return std::string(error.what());
    }
  };
  const auto seven = embedded::answering([] { return 7; });
  EXPECT_NE(refusal({.answer = seven}), "none");
  EXPECT_NE(refusal({.operation = "inEvalExp", .raise = [] {}, .answer = seven}), "none");
  for (const char* fixed :
       {"matrix::setErrorMode", "matrix::getErrorMode", "kxSetCell", "services::io::KLStream::pop"})
    EXPECT_EQ(refusal({.operation = fixed, .answer = seven}),
              "No plan can replace the answer of \"" + std::string(fixed) + "\"");
  EXPECT_EQ(refusal({.operation = "kcos::COSClass::getClass", .answer = seven}),
            "The answer planned for \"kcos::COSClass::getClass\" must be of its type, kcos::COSClass*");
  EXPECT_EQ(refusal({.operation = "inEvalExp", .answer = seven}), "none");
  kxArray_tag* value = inGetValueFromCurrentWorkspace("pump");
  host.setFault({"", 1, true, [] { throw 7; }});
  kxAddReference(value);
  EXPECT_FALSE(kxDropReference(value));
  EXPECT_FALSE(kxDropReference(value));
  EXPECT_FALSE(host.clearFault());
}

TEST_F(Gate, APlanAimsAtACallByAnArgument) {
  const auto failing = [&](const std::string& operation, const std::string& argument, auto ask) {
    host.setFault({operation, 1, false, [] { throw 7; }, argument});
    const std::string result = logOf([&] {
      try {
        ask();
      } catch (int) {
      }
    });
    return result.substr(result.find_last_of('\n', result.size() - 2) + 1) +
           (host.clearFault() ? "failed" : "none");
  };
  const auto ask = [&] {
    for (const char* name : {"a", "lab.Pump", "b"}) kcos::COSClass::getClass(makeInterned(name));
    kcos::COSClass::getClass(pump)->checkClass(false);
    kxDropReference(inGetValueFromCurrentWorkspace("pump"));
  };
  const std::string getClass = "kcos::COSClass::getClass";
  EXPECT_EQ(failing(getClass, "b", ask), getClass + "(\"b\")\nfailed");
  EXPECT_EQ(failing(getClass, "\"lab.Pump\"", ask), getClass + "(\"lab.Pump\")\nfailed");
  EXPECT_EQ(failing("", "lab.Pump", ask), "kcos::internal::makeInterned(\"lab.Pump\")\nfailed");
  EXPECT_EQ(failing("", "false", ask), "kcos::COSClass::checkClass(\"lab.Pump\", false)\nfailed");
  for (const char* other : {"lab", "<lab.Pump 1x1>", "\"lab.Pump\", false", "null"})
    EXPECT_EQ(failing("", other, ask), "kxDropReference(<lab.Pump 1x1>)\nnone") << other;
  host.setFault({getClass, 2, false, [] { throw 7; }, "lab.Pump"});
  EXPECT_NO_THROW(kcos::COSClass::getClass(makeInterned("b")));
  EXPECT_NO_THROW(kcos::COSClass::getClass(pump));
  EXPECT_THROW(kcos::COSClass::getClass(pump), int);
}

TEST_F(Gate, APlannedAnswerTakesTheOperationsPlaceOrChangesItsAnswer) {
  using embedded::answering;
  const std::string getClass = "kcos::COSClass::getClass", evaluate = "inEvalExp";
  const auto isFound = [&](const kcos::COSInternedName& name) {
    return kcos::COSClass::getClass(name) != nullptr;
  };
  host.setFault({.operation = getClass, .call = 2, .answer = answering([] {
                                                     return static_cast<kcos::COSClass*>(nullptr);
                                                   })});
  std::string found;
  for (int call = 0; call < 3; ++call) found += isFound(pump) ? 'x' : '.';
  EXPECT_EQ(found, "x.x");
  EXPECT_TRUE(host.clearFault());
  EXPECT_FALSE(host.failure()) << "an odd answer is an answer";

  // What is asked meanwhile, and even another plan, is no matter to an answer that is being given.
  host.setFault({.operation = getClass,
                 .andLater = true,
                 .answer = answering([&](kcos::COSClass* own) {
                   host.setFault({.operation = getClass, .argument = "none", .answer = answering([own] {
                                                                               return own;
                                                                             })});
                   EXPECT_EQ(kcos::COSClass::getClass(makeInterned("none")), own);
                   return isFound(pump) ? nullptr : own;
                 })});
  EXPECT_FALSE(isFound(pump));
  EXPECT_TRUE(host.clearFault());

  kxArray_tag* slot = nullptr;
  const auto status = [&] { return inEvalExp(u"5", 1, &slot, true, Tamsix::orvo::EvalSource::Query); };
  host.setFault({.operation = evaluate, .answer = answering([] { return 7; })});
  EXPECT_EQ(status(), 7);
  EXPECT_EQ(slot, nullptr);
  host.setFault({.operation = evaluate, .answer = answering([](int own) { return own - 1; })});
  EXPECT_EQ(status(), -1);
  ASSERT_NE(slot, nullptr);
  EXPECT_TRUE(kxDropReference(slot));
  kxDestroyArray(slot);

  host.setFault({.operation = "kcos::COSClass::getSuperclasses",
                 .answer = answering([]() -> kcos::COSEnumeration<kcos::COSInternedName> { throw 7; })});
  EXPECT_THROW(kcos::COSClass::getClass(pump)->getSuperclasses(), int);
  host.clearFault();
}

TEST_F(Gate, ACallCountsOnceWhateverBecomesOfIt) {
  const auto counted = [&](auto ask) {
    const auto before = host.callCount();
    ask();
    return host.callCount() - before;
  };
  const auto ask = [&] { kcos::COSClass::getClass(pump); };
  EXPECT_EQ(counted(ask), 1U);
  EXPECT_EQ(counted([&] { logOf(ask); }), 1U);
  host.setFault({.operation = "kcos::COSClass::getClass",
                 .answer = embedded::answering([] { return static_cast<kcos::COSClass*>(nullptr); })});
  EXPECT_EQ(counted(ask), 1U);
  host.clearFault();
  host.requestInterrupt();
  EXPECT_EQ(counted([&] { EXPECT_THROW(ask(), InterruptException); }), 1U);
}

TEST_F(Gate, WithoutAHostTheRulesOfEachOperationHold) {
  kxArray_tag* value = inGetValueFromCurrentWorkspace("pump");
  const auto before = host.callCount();
  // Also when other threads have a host, and after one has gone.
  std::thread([&] {
    { const embedded::Activation there(host); }
    const auto refusal = [](auto ask) {
      try {
        ask();
        return std::string("none");
      } catch (const foundation::core::except::Exception& error) {
        return error.messageId() + " " + error.message();
      }
    };
    EXPECT_EQ(refusal([&] { kcos::COSClass::getClass(pump); }),
              "KORVAL:host:NotActive No host is active on this thread, so it cannot answer "
              "kcos::COSClass::getClass.");
    EXPECT_NE(refusal([] { inEvalExp(u"5", 0, nullptr, false, Tamsix::orvo::EvalSource::Query); }), "none");
    EXPECT_NE(refusal([] { matrix::setErrorMode(matrix::ErrorMode::Silent); }), "none");
    EXPECT_EQ(refusal([&] {
                EXPECT_EQ(makeInterned("lab.Pump"), pump);
                EXPECT_EQ(fl::i18n::to_ustring("a"), u"a");
                kxAddReference(value);
                EXPECT_FALSE(kxDropReference(value));
              }),
              "none");
  }).join();
  EXPECT_EQ(host.callCount(), before) << "of a thread whose host it is not";
  EXPECT_FALSE(kxDropReference(value));
}

TEST_F(Gate, AnInterruptIsRaisedAgainAndAgainUntilItIsCleared) {
  const embedded::ReferenceAudit before = embedded::Host::references();
  kxArray_tag* value = inGetValueFromCurrentWorkspace("pump");
  host.requestInterrupt();
  for (int call = 0; call < 3; ++call) EXPECT_THROW(kcos::COSClass::getClass(pump), InterruptException);
  EXPECT_THROW(makeInterned("a"), InterruptException);
  EXPECT_THROW(fl::i18n::to_string(u"a"), InterruptException);
  EXPECT_FALSE(kxDropReference(value)) << "no interrupt stops a release";
  EXPECT_TRUE(host.interruptRequested());
  host.clearInterrupt();
  EXPECT_FALSE(host.interruptRequested());
  EXPECT_NO_THROW(kcos::COSClass::getClass(pump));
  EXPECT_EQ(before.values, embedded::Host::references().values);
  EXPECT_EQ(before.added + 1, embedded::Host::references().added);
  EXPECT_EQ(before.dropped + 1, embedded::Host::references().dropped);
}

TEST_F(Gate, AnInterruptMayComeFromAnotherThreadOrASignalHandler) {
  std::thread([&] { host.requestInterrupt(); }).join();
  EXPECT_THROW(kcos::COSClass::getClass(pump), InterruptException);
  host.clearInterrupt();
  static embedded::Host* signalled;
  signalled = &host;
  const auto previous = std::signal(SIGUSR1, [](int) { signalled->requestInterrupt(); });
  std::raise(SIGUSR1);
  std::signal(SIGUSR1, previous);
  EXPECT_THROW(kcos::COSClass::getClass(pump), InterruptException);
}

TEST_F(Gate, TheInterruptComesBeforeTheFaultAndBothAreLogged) {
  host.setFault({"kcos::COSClass::getClass", 1, false, [] { throw 7; }});
  host.requestInterrupt();
  EXPECT_EQ("kcos::COSClass::getClass(\"lab.Pump\")\n",
            logOf([&] { EXPECT_THROW(kcos::COSClass::getClass(pump), InterruptException); }));
  host.clearInterrupt();
  EXPECT_EQ("kcos::COSClass::getClass(\"lab.Pump\")\n",
            logOf([&] { EXPECT_THROW(kcos::COSClass::getClass(pump), int); }));
}

// Whoever asks may swallow what is raised, as the library does by its rules: the host remembers it all the same.
TEST_F(Gate, TheFirstFailureIsKeptUntilItIsForgotten) {
  const std::vector<std::pair<std::string, std::function<void()>>> operations{
      {"kcos::COSClass::getClass", [&] { kcos::COSClass::getClass(pump); }},
      {"kcos::internal::makeInterned", [] { makeInterned("a"); }},
      {"inGetValueFromCurrentWorkspace", [] { kxDropReference(inGetValueFromCurrentWorkspace("pump")); }},
      {"omIsKCOS", [] { omIsKCOS(nullptr); }},
  };
  struct {
    std::function<void()> raise;
    std::string message;
    bool isInterrupt;
  } const kinds[] = {
      {[] { throw foundation::core::except::Exception("a:b", "broken"); }, "broken [a:b]", false},
      {[] { throw std::runtime_error("out of order"); }, "out of order", false},
      {[] { throw 7; }, "the class system failed", false},
      {[] { throw InterruptException(); }, "interrupted", true},
  };
  const auto fails = [&](const std::string& operation, const auto& ask, const auto& raise) {
    host.setFault({operation, 1, false, raise});
    EXPECT_ANY_THROW(ask()) << operation;
    host.clearFault();
  };
  for (const auto& [operation, ask] : operations) {
    for (const auto& kind : kinds) {
      SCOPED_TRACE(operation + ": " + kind.message);
      EXPECT_FALSE(host.failure());
      fails(operation, ask, kind.raise);
      // Neither what goes well nor what fails later is the first failure.
      ask();
      fails(
          "fl::i18n::to_string", [] { fl::i18n::to_string(u"a"); }, [] { throw 8; });
      ASSERT_TRUE(host.failure());
      EXPECT_EQ(host.failure()->operation, operation);
      EXPECT_EQ(host.failure()->message, kind.message);
      EXPECT_EQ(host.failure()->isInterrupt, kind.isInterrupt);
      host.clearFailure();
    }
  }
  // Answers by the operation's own rules, errors of code and the user's interrupt are none.
  EXPECT_THROW(kcos::COSIterator().nextElement(), kcos::ENoElements);
  EXPECT_NE(0, inEvalExp(u"nothing.of.that.name", 0, nullptr, true, Tamsix::orvo::EvalSource::Query));
  host.requestInterrupt();
  EXPECT_THROW(kcos::COSClass::getClass(pump), InterruptException);
  host.clearInterrupt();
  EXPECT_FALSE(host.failure());
}

}  // namespace
