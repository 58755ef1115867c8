#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "host/Exceptions.h"
#include "tests/code/CodeWorld.h"
#include "tests/support/Growth.h"

namespace {

using Clock = std::chrono::steady_clock;

std::string repeated(const std::string& text, std::size_t count) {
  std::string result;
  for (std::size_t at = 0; at < count; ++at) result += text;
  return result;
}

TEST(CodeLimits, EndWhatGoesTooFar) {
  code::World world;
  world.host().setCodeLimits({.steps = 2000, .depth = 60, .elements = 1000});
  const std::vector<std::pair<std::string, std::string>> rows{
      {"while true, end", "!KORVAL:code:StepLimit 1:7"},
      {"pump.Endless;", "!KORVAL:code:StepLimit 1:7"},
      {"for k = 1:900, x = k; end, for k = 1:900, x = k; end", "!KORVAL:code:StepLimit 1:"},
      {"recurse(1)", "!KORVAL:code:DepthLimit 1:"},
      {"zeros(100, 100)", "!KORVAL:code:SizeLimit 1:1"},
      {"zeros(1e18, 1e18)", "!KORVAL:code:SizeLimit 1:1"},
      {"1:1e9", "!KORVAL:code:SizeLimit 1:1"},
      {"x(1e12) = 1;", "!KORVAL:code:SizeLimit 1:2"},
      {"x = ones(30, 30); [x; x]", "!KORVAL:code:SizeLimit 1:"},
      {"x = ones(1, 40); x' * x", "!KORVAL:code:SizeLimit 1:"},
      {"t = \"a\"; while true, t = t + t; end", "!KORVAL:code:SizeLimit 1:"},
      {"t = ones(1, 900); while true, disp(t), end", "1x900 double\n"},
      {"t = upper(\"" + repeated("a", 99) + "\"); x(1:20) = t;", "!KORVAL:code:SizeLimit 1:"},
      {"c = {1}; for k = 1:15, c = {c, c}; end, c", "!KORVAL:code:S"},
      {"num2str(1:900)", "!KORVAL:code:SizeLimit 1:1"},
      {"sprintf('%999d', 1:9)", "!KORVAL:code:SizeLimit 1:1"},
      {repeated("(", 99) + "1" + repeated(")", 99), "!KORVAL:code:DepthLimit 1:"},
      {repeated("(", 101) + "1", "!KORVAL:code:NestingLimit 1:102"},
      {repeated("if 1, ", 101), "!KORVAL:code:NestingLimit 1:"},
      {repeated("[", 200), "!KORVAL:code:NestingLimit 1:102"}};
  for (const auto& [text, expected] : rows) {
    const std::string answer = world.value(text);
    EXPECT_EQ(answer.substr(0, expected.size()), expected) << text;
  }
  EXPECT_EQ(world.value("1 + 1"), "2") << "the limits begin anew with each run";
}

TEST(CodeLimits, DeepCodeFitsOnTheStack) {
  code::World world;
  world.host().setCodeLimits({.steps = 1'000'000});
  EXPECT_EQ(world.value("c = {}; while true, c = {c}; end").substr(0, 22), "!KORVAL:code:StepLimit");
  EXPECT_EQ(world.value("c = {}; for k = 1:2000, c = {c}; end; c").substr(0, 23), "!KORVAL:code:DepthLimit");
  EXPECT_EQ(world.value("recurse(1)").substr(0, 23), "!KORVAL:code:DepthLimit");
  EXPECT_EQ(world.value(repeated("{", 100) + "1" + repeated("}", 100)).substr(0, 3), "{{{");
  EXPECT_EQ(world.value(repeated("(-", 99) + "1" + repeated(")", 99)), "-1");
}

/// Whatever is repeated.
TEST(CodeLimits, LongTextsAreLinear) {
  code::World world;
  world.host().setCodeLimits({.steps = 100'000'000});
  const std::vector<std::pair<std::string, std::string>> rows{
      {"s", ".a"},   {"s.a.b", " + 1"}, {"x = 1; x", "(1)"},
      {"1", "''"},   {"", "-"},         {"1", " & 1"},
      {"nix", ".a"}, {"x = {", "1, "},  {"", "x = 1; "},
      {"1 ", "%a"},  {"'", "a"},        {"", "("},
      {"lab", ".b"}, {"x = @a;%", "b"}, {"1", "e5"},
      {"f", "{1}"},  {"[", "1;"},       {"\"", "\"\""},
      {"1:2", ":3"}, {"1", "\n"},       {"if 1, ", "elseif 0, "}};
  for (const auto& [start, more] : rows) {
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
    world.host().requestInterrupt();
  });
  world.host().setCodeLimits({.steps = ~std::uint64_t{}});
  EXPECT_THROW(world.run(text), Tamsix::System::InterruptException) << text;
  const auto stopped = Clock::now();
  user.join();
  world.host().clearInterrupt();
  world.host().takeOutput();
  EXPECT_EQ(world.value("1"), "1");
  return std::chrono::duration<double>(stopped - requested).count();
}

TEST(CodeLimits, AnInterruptStopsCodeAtOnce) {
  const double usual = secondsOfSteps();
  for (const std::string text :
       {"while true, end", "pump.Endless;", "x = ones(1000); while true, x = x * x; end",
        "while true, fprintf('%d', 1:9999); end", "x = zeros(1, 1e6); while true, x(end) = 1; end",
        "while true, [zeros(1, 9e5) 1]; end", "while true, string(1:9e5); end",
        "while true, num2str(1:9e4); end", "c = cell(1, 9e5); while true, strcmp(c, 'a'); end",
        "while true, struct('a', cell(1, 9e5)); end", "x = 1:9e5; while true, [x(x > 3), 1:9]; end",
        "z.a = 1; while true, z(9e5).a = 2; end", "c = cell(1, 2e5); while true, x = {c{:}}; end",
        "while true, sprintf('%d', 1:9e5); end", "c = {1}; for k = 1:60, c = {c, c}; end, disp(c)",
        "x = zeros(900, 900); while true, x = x'; end", "while true, sum(char(1:9e5) + 1); end"}) {
    // The machine may be busy with something else: the best of a few counts.
    bool isAtOnce = secondsToStop(text) < usual;
    for (int attempt = 0; attempt < 5 && !isAtOnce; ++attempt)
      isAtOnce = secondsToStop(text) < secondsOfSteps();
    EXPECT_TRUE(isAtOnce) << text;
  }
}

}  // namespace
