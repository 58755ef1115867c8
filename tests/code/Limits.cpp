#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "host/Exceptions.h"
#include "tests/code/CodeWorld.h"
#include "tests/support/Growth.h"
#include "tests/support/Table.h"

namespace {

using Clock = std::chrono::steady_clock;

std::string repeated(const std::string& text, std::size_t count) {
  std::string result;
  for (std::size_t at = 0; at < count; ++at) result += text;
  return result;
}

TEST(CodeLimits, EndWhatGoesTooFar) {
  code::World world;
  world.host.setCodeLimits({.steps = 2000, .depth = 60, .elements = 1000});
  for (const auto& [text, expected] : rowsOf<2>("tests/code/texts.rows", "limits")) {
    const std::string answer = world.value(text);
    EXPECT_EQ(answer.substr(0, expected.size()), expected) << text;
  }
  EXPECT_EQ(world.value("1 + 1"), "2") << "the limits begin anew with each run";
}

TEST(CodeLimits, DeepCodeFitsOnTheStack) {
  code::World world;
  world.host.setCodeLimits({.steps = 1'000'000});
  EXPECT_EQ(world.value("c = {}; while true, c = {c}; end").substr(0, 22), "!KORVAL:code:StepLimit");
  EXPECT_EQ(world.value("c = {}; for k = 1:2000, c = {c}; end; c").substr(0, 23), "!KORVAL:code:DepthLimit");
  EXPECT_EQ(world.value("recurse(1)").substr(0, 23), "!KORVAL:code:DepthLimit");
  EXPECT_EQ(world.value(repeated("{", 100) + "1" + repeated("}", 100)).substr(0, 3), "{{{");
  EXPECT_EQ(world.value(repeated("(-", 99) + "1" + repeated(")", 99)), "-1");
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
  EXPECT_EQ(world.value("x = 0" + repeated(" + 1", 2000)), "x = 2000");
  EXPECT_EQ(world.run("d" + repeated(".a", 2000) + " = 5; d" + repeated(".a", 2000)),
            "!KORVAL:code:DepthLimit 1:1998");
  EXPECT_EQ(world.run("s" + repeated(".a", 2000)), "!KORVAL:code:NoSuchField 1:4");
}

/// What this machine takes for three hundred thousand steps at this moment, and so what is at once for it.
double secondsOfSteps() {
  code::World world;
  const auto start = Clock::now();
  EXPECT_EQ(world.run("for k = 1:300000, end"), "");
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// From the request to the end of code that does not end by itself; afterwards the session works.
double secondsToStop(const std::string& text) {
  code::World world;
  Clock::time_point requested;
  std::thread user([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(30));  // mostly, the code runs by then
    requested = Clock::now();
    world.host.requestInterrupt();
  });
  world.host.setCodeLimits({.steps = ~std::uint64_t{}});
  EXPECT_THROW(world.run(text), Tamsix::System::InterruptException) << text;
  const auto stopped = Clock::now();
  user.join();
  world.host.clearInterrupt();
  world.host.takeOutput();
  EXPECT_EQ(world.value("1"), "1");
  return std::chrono::duration<double>(stopped - requested).count();
}

TEST(CodeLimits, AnInterruptStopsCodeAtOnce) {
  const double usual = secondsOfSteps();
  for (const auto& [text] : rowsOf<1>("tests/code/texts.rows", "endless code")) {
    // The machine may be busy with something else: the best of a few counts.
    bool isAtOnce = secondsToStop(text) < usual;
    for (int attempt = 0; attempt < 5 && !isAtOnce; ++attempt)
      isAtOnce = secondsToStop(text) < secondsOfSteps();
    EXPECT_TRUE(isAtOnce) << text;
  }
}

}  // namespace
