// What the gate does: count, log, interrupt and faults.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <thread>

#include "embedded/Host.h"
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
  kxArray_tag* value = inGetValueFromCurrentWorkspace("pump");
  host.setFault({"", 1, true, [] { throw 7; }});
  kxAddReference(value);
  EXPECT_FALSE(kxDropReference(value));
  EXPECT_FALSE(kxDropReference(value));
  EXPECT_FALSE(host.clearFault());
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

}  // namespace
