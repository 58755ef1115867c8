#include <gtest/gtest.h>

#include "embedded/Inspection.h"
#include "host/Arrays.h"
#include "tests/code/CodeWorld.h"
#include "tests/support/Allocations.h"

namespace {

/// Whatever is inside, and whatever is wanted of the gate.
TEST(Release, AllocatesNothing) {
  code::World world;
  const std::vector<std::string> texts{
      "v = {}; for k = 1:2000, v = {v}; end", "v = cell(1, 1000); v(:) = {1}; v = [v v]",
      "v = struct('a', {{{1}, {pump, 'text'}}})", "v = {pumps, far, old, @lab.tune, ref, words, grid, big}",
      "v = {lab.Pump(3), lab.Mode.Idle, findpackage('old')}"};
  for (const bool isInterrupted : {false, true}) {
    for (const std::string& text : texts) {
      world.run(text + ";");
      auto value = world.host.variable("v");
      ASSERT_TRUE(value) << text;
      world.run("v = 0;");
      const auto before = embedded::Host::references().values;
      if (isInterrupted) world.host.requestInterrupt();
      {
        const allocations::Failing failing;
        value.reset();
      }
      EXPECT_LT(embedded::Host::references().values, before) << text;
      world.host.clearInterrupt();
    }
  }
}

}  // namespace
