#include <gtest/gtest.h>

#include <boost/algorithm/string/replace.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <fstream>

#include "tests/code/CodeWorld.h"

namespace {

/// One half of a line "code => what it prints".
std::string unescaped(const std::string& half) {
  return boost::replace_all_copy(boost::trim_copy(half), "<NL>", "\n");
}

TEST(KorvalCode, PrintsWhatTheCasesSay) {
  std::ifstream file(code::fixture("language.cases"));
  std::size_t cases = 0;
  for (std::string line; std::getline(file, line);) {
    const auto arrow = line.find(" =>");
    if (arrow == std::string::npos) continue;
    EXPECT_EQ(code::World().value(unescaped(line.substr(0, arrow))), unescaped(line.substr(arrow + 3)))
        << line;
    ++cases;
  }
  EXPECT_GT(cases, 200U);
}

}  // namespace
