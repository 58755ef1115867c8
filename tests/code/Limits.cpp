#include <gtest/gtest.h>

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "host/Exceptions.h"
#include "tests/code/CodeWorld.h"
#include "tests/support/Allocations.h"
#include "tests/support/Growth.h"
#include "tests/support/Table.h"

namespace {

std::string repeated(const std::string& text, std::size_t count) {
  std::string result;
  for (std::size_t at = 0; at < count; ++at) result += text;
  return result;
}

/// Rows of code, and of how its answer begins.
void expectBegins(code::World& world, const std::string& table) {
  for (const auto& [text, expected] : rowsOf<2>("tests/code/texts.rows", table))
    EXPECT_EQ(world.value(text).substr(0, expected.size()), expected) << text;
}

TEST(CodeLimits, EndWhatGoesTooFar) {
  code::World world;
  world.host.setCodeLimits({.steps = 8000, .depth = 60, .elements = 1000});
  expectBegins(world, "limits");
  EXPECT_EQ(world.value("1 + 1"), "2") << "the limits begin anew with each run";
}

/// However it is written.
TEST(CodeLimits, SmallCodeTakesLittleMemory) {
  for (const auto& [text, expected] : rowsOf<2>("tests/code/texts.rows", "bombs")) {
    code::World world;
    const allocations::Peak peak;
    const std::string answer = world.value(text);
    EXPECT_EQ(answer.substr(0, expected.size()), expected) << text;
    EXPECT_LT(peak.bytes(), std::size_t{64} << 20U) << text;
  }
}

TEST(CodeLimits, DeepCodeFitsOnTheStack) {
  code::World world;
  world.host.setCodeLimits({.steps = 1'000'000});
  expectBegins(world, "deep code");
}

/// Whatever is repeated.
TEST(CodeLimits, LongTextsAreLinear) {
  code::World world;
  world.host.setCodeLimits({.steps = 100'000'000});
  for (const auto& [start, more] : rowsOf<2>("tests/code/texts.rows", "long texts")) {
    const std::size_t length = start == "s" || start == "'" ? 1U << 20U : 1U << 16U;
    const std::string some = start + repeated(more, length / 8 / more.size());
    const std::string many = start + repeated(more, length / more.size());
    EXPECT_TRUE(isLinear([&] { world.run(some); }, [&] { world.run(many); })) << start << more;
    EXPECT_LT(world.run(many).size(), 100U) << start << more;
  }
  expectBegins(world, "chains");
}

/// The processor's time from the request to the end of code that does not end by itself; afterwards the session works.
double secondsToStop(const std::string& text) {
  code::World world;
  world.host.setCodeLimits({.steps = ~std::uint64_t{}});
  clockid_t clock = {};
  pthread_getcpuclockid(pthread_self(), &clock);
  const double begin = cpuSeconds(clock);
  double requested = 0;
  std::atomic<bool> ended = false;
  std::thread user([&] {
    // After so much of the processor's time the code runs.
    while ((requested = cpuSeconds(clock)) < begin + 0.03 && !ended)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    world.host.requestInterrupt();
  });
  EXPECT_THROW(world.run(text), Tamsix::System::InterruptException) << text;
  const double stopped = cpuSeconds(clock);
  ended = true;
  user.join();
  world.host.clearInterrupt();
  world.host.takeOutput();
  EXPECT_EQ(world.value("1"), "1");
  return stopped - requested;
}

TEST(CodeLimits, AnInterruptStopsCodeAtOnce) {
  code::World world;
  // What three hundred thousand steps take is at once, on a machine of any speed.
  const double atOnce = cpuSecondsOf([&] { EXPECT_EQ(world.run("for k = 1:300000, end"), ""); });
  for (const auto& [text] : rowsOf<1>("tests/code/texts.rows", "endless code"))
    EXPECT_LT(secondsToStop(text), atOnce) << text;
}

}  // namespace
