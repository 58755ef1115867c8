#include <gtest/gtest.h>

#include "tests/code/CodeWorld.h"
#include "tests/support/Table.h"

namespace {

TEST(KorvalCode, PrintsWhatTheCasesSay) {
  const auto rows = rowsOf<2>("tests/code/language.cases");
  for (const auto& [text, printed] : rows) EXPECT_EQ(code::World().value(text), printed) << text;
  EXPECT_GT(rows.size(), 200U);
}

}  // namespace
