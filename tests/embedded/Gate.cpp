// What the gate does: count, log, interrupt and faults.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <map>
#include <stdexcept>
#include <thread>

#include "embedded/Host.h"
#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/Exceptions.h"
#include "host/Interpreter.h"
#include "host/Text.h"
#include "tests/support/Table.h"

namespace {

using embedded::FaultPlan;
using kcos::internal::makeInterned;
using Tamsix::System::InterruptException;

const std::string getClass = "kcos::COSClass::getClass";
const std::function<void()> raiseSeven = [] { throw 7; };

/// What leaves `ask`; "none" when nothing does.
std::string thrownBy(const std::function<void()>& ask) {
  try {
    ask();
    return "none";
  } catch (const std::invalid_argument& error) {
    return error.what();
  } catch (const InterruptException&) {
    return "interrupt";
  } catch (const foundation::core::except::Exception& error) {
    return error.messageId() + " " + error.message();
  } catch (int) {
    return "int";
  }
}

class Gate : public ::testing::Test {
 protected:
  static embedded::Description lab() {
    embedded::Description description;
    description.classes.emplace_back().name = "lab.Pump";
    description.workspace.push_back({"pump", {embedded::ObjectValue{"lab.Pump", {}, ""}}});
    return description;
  }

  void askForPump() const { kcos::COSClass::getClass(pump); }
  /// What leaves a look-up.
  std::string thrownByLookUp() const {
    return thrownBy([&] { askForPump(); });
  }

  /// The log of what `ask` asks, a line for each call.
  std::string logOf(const std::function<void()>& ask) {
    host.startLog();
    ask();
    std::string lines;
    for (const auto& call : host.takeLog()) lines += call.operation + "(" + call.arguments + ")\n";
    return lines;
  }

  embedded::Host host{lab()};
  embedded::Activation active{host};
  const kcos::COSInternedName pump = makeInterned("lab.Pump");
};

TEST_F(Gate, LogsCallsInOrderWithTheObjectThatIsAskedFirst) {
  const std::string log = logOf([&] {
    kcos::COSClass::getClass(pump)->checkClass(false);
    kcos::COSClass::getClass({});
    makeInterned(std::string("a\"\0", 3));
    kxDropReference(inGetValueFromCurrentWorkspace("pump"));
    kcos::nameresolution::omResolveAnyClass("x", nullptr);
    omIsKCOS(nullptr);
  });
  EXPECT_EQ(log, R"(kcos::COSClass::getClass("lab.Pump")
kcos::COSClass::checkClass("lab.Pump", false)
kcos::COSClass::getClass(null)
kcos::internal::makeInterned("a\"\x00")
inGetValueFromCurrentWorkspace("pump")
kxDropReference(<lab.Pump 1x1>)
kcos::nameresolution::omResolveAnyClass("x", null)
omIsKCOS(null)
)");
  askForPump();
  EXPECT_TRUE(host.takeLog().empty()) << "nothing is logged after the end of a log";
}

TEST_F(Gate, AFaultHappensAtItsCallOnceUnlessThePlanSaysOtherwise) {
  // The operation, the call, and at which of five look-ups the fault happens.
  for (const auto& [operation, call, later, failing] : tableOf<4>(R"(
      kcos::COSClass::getClass | 1 | once | x....; kcos::COSClass::getClass | 3 | once      | ..x..
      kcos::COSClass::getClass | 6 | once | .....; kcos::COSClass::getClass | 2 | and later | .xxxx
                               | 2 | once | .x...; omIsKCOS                 | 1 | once      | .....)")) {
    host.setFault({operation, std::stoul(call), later != "once", raiseSeven});
    std::string result;
    for (int look = 0; look < 5; ++look) result += thrownByLookUp() == "int" ? 'x' : '.';
    EXPECT_EQ(failing, result) << operation << call;
    EXPECT_EQ(host.clearFault(), failing.find('x') != std::string::npos);
  }
  EXPECT_EQ(thrownByLookUp(), "none");
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
  const auto refusal = [&](const FaultPlan& plan) { return thrownBy([&] { host.setFault(plan); }); };
  for (const std::string wrong : {"kxDropReference", "kcos::COSClass::getclass", "nothing"})
    EXPECT_EQ(refusal({wrong, 1, false, raiseSeven}),
              '"' + wrong + "\" is no operation of the host that may throw");
  const auto seven = embedded::answering([] { return 7; });
  for (const FaultPlan& wrong : {FaultPlan{"", 0, false, raiseSeven}, FaultPlan{},
                                 FaultPlan{.operation = "inEvalExp", .raise = raiseSeven, .answer = seven}})
    EXPECT_EQ(refusal(wrong),
              "A fault plan needs a call, counted from 1, and either something to raise or an answer");
  EXPECT_EQ(refusal({.answer = seven}), "A plan with an answer needs an operation");
  for (const std::string fixed :
       {"matrix::setErrorMode", "matrix::getErrorMode", "kxSetCell", "services::io::KLStream::pop"})
    EXPECT_EQ(refusal({.operation = fixed, .answer = seven}),
              "No plan can replace the answer of \"" + fixed + '"');
  EXPECT_EQ(refusal({.operation = getClass, .answer = seven}),
            "The answer planned for \"kcos::COSClass::getClass\" must be of its type, kcos::COSClass*");
  EXPECT_EQ(refusal({.operation = "inEvalExp", .answer = seven}), "none");
  kxArray_tag* value = inGetValueFromCurrentWorkspace("pump");
  host.setFault({"", 1, true, raiseSeven});
  kxAddReference(value);
  EXPECT_FALSE(kxDropReference(value) || kxDropReference(value) || host.clearFault());
}

TEST_F(Gate, APlanAimsAtACallByAnArgument) {
  // The operation, the argument, and the last call, which is the one that fails.
  for (const auto& [operation, argument, last, failed] : tableOf<4>(R"(
      kcos::COSClass::getClass | b                 | kcos::COSClass::getClass("b")                 | yes
      kcos::COSClass::getClass | "lab.Pump"        | kcos::COSClass::getClass("lab.Pump")          | yes
                               | lab.Pump          | kcos::internal::makeInterned("lab.Pump")      | yes
                               | false             | kcos::COSClass::checkClass("lab.Pump", false) | yes
                               | lab               | kxDropReference(<lab.Pump 1x1>)               | no
                               | <lab.Pump 1x1>    | kxDropReference(<lab.Pump 1x1>)               | no
                               | "lab.Pump", false | kxDropReference(<lab.Pump 1x1>)               | no
                               | null              | kxDropReference(<lab.Pump 1x1>)               | no)")) {
    host.setFault({operation, 1, false, raiseSeven, argument});
    std::string thrown;
    const std::string log = logOf([&] {
      thrown = thrownBy([&] {
        for (const char* name : {"a", "lab.Pump", "b"}) kcos::COSClass::getClass(makeInterned(name));
        kcos::COSClass::getClass(pump)->checkClass(false);
        kxDropReference(inGetValueFromCurrentWorkspace("pump"));
      });
    });
    EXPECT_TRUE(log.ends_with("\n" + last + "\n")) << argument << "\n" << log;
    EXPECT_EQ(thrown, failed == "yes" ? "int" : "none") << argument;
    EXPECT_EQ(host.clearFault(), failed == "yes") << argument;
  }
  host.setFault({getClass, 2, false, raiseSeven, "lab.Pump"});
  EXPECT_NO_THROW(kcos::COSClass::getClass(makeInterned("b")));
  EXPECT_EQ(thrownByLookUp(), "none");
  EXPECT_EQ(thrownByLookUp(), "int");
}

TEST_F(Gate, APlannedAnswerTakesTheOperationsPlaceOrChangesItsAnswer) {
  using embedded::answering;
  const auto noClass = answering([] { return static_cast<kcos::COSClass*>(nullptr); });
  const auto isFound = [&] { return kcos::COSClass::getClass(pump) != nullptr; };
  host.setFault({.operation = getClass, .call = 2, .answer = noClass});
  std::string found;
  for (int call = 0; call < 3; ++call) found += isFound() ? 'x' : '.';
  EXPECT_EQ(found, "x.x");
  EXPECT_TRUE(host.clearFault());
  EXPECT_FALSE(host.failure()) << "an odd answer is an answer";

  // What is asked meanwhile, and even another plan, is no matter to an answer that is being given.
  const auto withAnotherPlan = [&](kcos::COSClass* own) {
    const auto same = answering([own] { return own; });
    host.setFault({.operation = getClass, .argument = "none", .answer = same});
    EXPECT_EQ(kcos::COSClass::getClass(makeInterned("none")), own);
    return isFound() ? nullptr : own;
  };
  host.setFault({.operation = getClass, .andLater = true, .answer = answering(withAnotherPlan)});
  EXPECT_FALSE(isFound());
  EXPECT_TRUE(host.clearFault());

  kxArray_tag* slot = nullptr;
  const auto status = [&] { return inEvalExp(u"5", 1, &slot, true, Tamsix::orvo::EvalSource::Query); };
  host.setFault({.operation = "inEvalExp", .answer = answering([] { return 7; })});
  EXPECT_EQ(status(), 7);
  EXPECT_EQ(slot, nullptr);
  host.setFault({.operation = "inEvalExp", .answer = answering([](int own) { return own - 1; })});
  EXPECT_EQ(status(), -1);
  ASSERT_NE(slot, nullptr);
  EXPECT_TRUE(kxDropReference(slot));
  kxDestroyArray(slot);

  const auto throwing = answering([]() -> kcos::COSClass* { throw 7; });
  host.setFault({.operation = getClass, .answer = throwing});
  EXPECT_EQ(thrownByLookUp(), "int");
}

TEST_F(Gate, ACallCountsOnceWhateverBecomesOfIt) {
  const auto counted = [&](const std::function<void()>& ask) {
    const auto before = host.callCount();
    ask();
    return host.callCount() - before;
  };
  const auto ask = [&] { thrownByLookUp(); };
  EXPECT_EQ(counted(ask), 1U);
  EXPECT_EQ(counted([&] { logOf(ask); }), 1U);
  host.setFault({.operation = getClass,
                 .answer = embedded::answering([] { return static_cast<kcos::COSClass*>(nullptr); })});
  EXPECT_EQ(counted(ask), 1U);
  host.requestInterrupt();
  EXPECT_EQ(counted(ask), 1U);
}

TEST_F(Gate, WithoutAHostTheRulesOfEachOperationHold) {
  kxArray_tag* value = inGetValueFromCurrentWorkspace("pump");
  const auto before = host.callCount();
  // Also when other threads have a host, and after one has gone.
  std::thread([&] {
    { const embedded::Activation there(host); }
    EXPECT_EQ(thrownByLookUp(),
              "KORVAL:host:NotActive No host is active on this thread, so it cannot answer "
              "kcos::COSClass::getClass.");
    const auto evaluate = [] { inEvalExp(u"5", 0, nullptr, false, Tamsix::orvo::EvalSource::Query); };
    EXPECT_NE(thrownBy(evaluate), "none");
    EXPECT_NE(thrownBy([] { matrix::setErrorMode(matrix::ErrorMode::Silent); }), "none");
    EXPECT_EQ(makeInterned("lab.Pump"), pump);
    EXPECT_EQ(fl::i18n::to_ustring("a"), u"a");
    kxAddReference(value);
    EXPECT_FALSE(kxDropReference(value));
  }).join();
  EXPECT_EQ(host.callCount(), before) << "of a thread whose host it is not";
  EXPECT_FALSE(kxDropReference(value));
}

TEST_F(Gate, AnInterruptIsRaisedAgainAndAgainUntilItIsCleared) {
  kxArray_tag* value = inGetValueFromCurrentWorkspace("pump");
  host.requestInterrupt();
  for (int call = 0; call < 3; ++call) EXPECT_EQ(thrownByLookUp(), "interrupt");
  EXPECT_THROW(makeInterned("a"), InterruptException);
  EXPECT_THROW(fl::i18n::to_string(u"a"), InterruptException);
  const embedded::ReferenceAudit before = embedded::Host::references();
  EXPECT_FALSE(kxDropReference(value)) << "no interrupt stops a release";
  EXPECT_EQ(before.dropped + 1, embedded::Host::references().dropped);
  EXPECT_TRUE(host.interruptRequested());
  host.clearInterrupt();
  EXPECT_FALSE(host.interruptRequested());
  EXPECT_EQ(thrownByLookUp(), "none");
}

TEST_F(Gate, AnInterruptMayComeFromAnotherThreadOrASignalHandler) {
  std::thread([&] { host.requestInterrupt(); }).join();
  EXPECT_EQ(thrownByLookUp(), "interrupt");
  host.clearInterrupt();
  static embedded::Host* signalled;
  signalled = &host;
  const auto previous = std::signal(SIGUSR1, [](int) { signalled->requestInterrupt(); });
  std::raise(SIGUSR1);
  std::signal(SIGUSR1, previous);
  EXPECT_EQ(thrownByLookUp(), "interrupt");
}

TEST_F(Gate, TheInterruptComesBeforeTheFaultAndBothAreLogged) {
  host.setFault({getClass, 1, false, raiseSeven});
  host.requestInterrupt();
  const std::string log = logOf([&] {
    EXPECT_EQ(thrownByLookUp(), "interrupt");
    host.clearInterrupt();
    EXPECT_EQ(thrownByLookUp(), "int");
  });
  EXPECT_EQ(log, "kcos::COSClass::getClass(\"lab.Pump\")\nkcos::COSClass::getClass(\"lab.Pump\")\n");
}

// Whoever asks may swallow what is raised, as the library does by its rules: the host remembers it all the same.
TEST_F(Gate, TheFirstFailureIsKeptUntilItIsForgotten) {
  const std::map<std::string, std::function<void()>> operations{
      {getClass, [&] { askForPump(); }},
      {"kcos::internal::makeInterned", [] { makeInterned("a"); }},
      {"inGetValueFromCurrentWorkspace", [] { kxDropReference(inGetValueFromCurrentWorkspace("pump")); }},
      {"omIsKCOS", [] { omIsKCOS(nullptr); }}};
  const std::map<std::string, std::function<void()>> failures{
      {"broken [a:b]", [] { throw foundation::core::except::Exception("a:b", "broken"); }},
      {"out of order", [] { throw std::runtime_error("out of order"); }},
      {"the class system failed", raiseSeven},
      {"interrupted", [] { throw InterruptException(); }}};
  for (const auto& [operation, ask] : operations)
    for (const auto& [message, raise] : failures) {
      SCOPED_TRACE(operation + ": " + message);
      EXPECT_FALSE(host.failure());
      host.setFault({operation, 1, false, raise});
      EXPECT_ANY_THROW(ask());
      // Neither what goes well nor what fails later is the first failure.
      ask();
      host.setFault({"fl::i18n::to_string", 1, false, raiseSeven});
      EXPECT_THROW(fl::i18n::to_string(u"a"), int);
      ASSERT_TRUE(host.failure());
      EXPECT_EQ(host.failure()->operation, operation);
      EXPECT_EQ(host.failure()->message, message);
      EXPECT_EQ(host.failure()->isInterrupt, message == "interrupted");
      host.clearFailure();
    }
  // Answers by the operation's own rules, errors of code and the user's interrupt are none.
  EXPECT_THROW(kcos::COSIterator().nextElement(), kcos::ENoElements);
  EXPECT_NE(0, inEvalExp(u"nothing.of.that.name", 0, nullptr, true, Tamsix::orvo::EvalSource::Query));
  host.requestInterrupt();
  EXPECT_EQ(thrownByLookUp(), "interrupt");
  host.clearInterrupt();
  EXPECT_FALSE(host.failure());
}

}  // namespace
