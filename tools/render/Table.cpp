#include "tools/render/Table.h"

#include <algorithm>

namespace tools {

namespace {

/// Characters of a UTF-8 text.
std::size_t lengthOf(const std::string& text) {
  return std::ranges::count_if(text, [](char unit) { return (unit & 0xC0) != 0x80; });
}

std::vector<std::size_t> widthsOf(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
  for (const auto& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths[column] = std::max(widths[column], lengthOf(row[column]));
    }
  }
  return widths;
}

std::string lineOf(const std::vector<std::string>& row, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t column = 0; column < row.size(); ++column) {
    if (widths[column] > 0)
      line += row[column] + std::string(widths[column] - lengthOf(row[column]) + 2, ' ');
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace

std::string tableOf(const std::vector<std::vector<std::string>>& rows, std::size_t indent) {
  const std::vector<std::size_t> widths = widthsOf(rows);
  std::string table;
  for (const auto& row : rows) table += std::string(indent, ' ') + lineOf(row, widths) + '\n';
  return table;
}

}  // namespace tools
