#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "tests/support/Text.h"

using Cells = std::vector<std::string>;

/// The rows of a file of rows, by its path from the source folder; docs/testing.md explains such files.
std::vector<Cells> rowsOf(const std::string& file, const std::string& table = "");

/// The rows of a table in a string: they end at ";" or at the end of a line, cells stand between "|".
std::vector<Cells> rowsIn(const std::string& text);

template <std::size_t columns>
std::vector<std::array<std::string, columns>> withColumns(const std::vector<Cells>& rows) {
  std::vector<std::array<std::string, columns>> result;
  for (const Cells& row : rows) {
    EXPECT_EQ(row.size(), columns) << testing::PrintToString(row);
    std::copy_n(row.begin(), std::min(row.size(), columns), result.emplace_back().begin());
  }
  return result;
}
template <std::size_t columns>
auto rowsOf(const std::string& file, const std::string& table = "") {
  return withColumns<columns>(rowsOf(file, table));
}
template <std::size_t columns>
auto tableOf(const std::string& text) {
  return withColumns<columns>(rowsIn(text));
}
