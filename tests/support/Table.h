#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <boost/algorithm/string.hpp>
#include <string>
#include <vector>

#include "host/Text.h"

/// The rows of a table that is written as text: rows end at ";" or at the end of a line, cells stand between "|".
/// "<NUL>" means that character, and "<LONG>" a long text.
template <std::size_t columns>
std::vector<std::array<std::string, columns>> tableOf(std::string text) {
  boost::replace_all(text, "<NUL>", std::string(1, '\0'));
  boost::replace_all(text, "<LONG>", std::string(100000, 'x'));
  boost::trim(text);
  std::vector<std::string> lines, cells;
  std::vector<std::array<std::string, columns>> rows;
  for (const std::string& line : boost::split(lines, text, boost::is_any_of(";\n"))) {
    if (boost::trim_copy(line).empty()) continue;
    boost::split(cells, line, boost::is_any_of("|"));
    EXPECT_EQ(cells.size(), columns) << line;
    cells.resize(columns);
    std::transform(cells.begin(), cells.end(), rows.emplace_back().begin(),
                   [](const std::string& cell) { return boost::trim_copy(cell); });
  }
  return rows;
}

inline std::u16string wide(const std::string& text) { return fl::i18n::to_ustring(text); }
