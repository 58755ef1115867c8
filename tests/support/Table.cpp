#include "tests/support/Table.h"

#include <boost/algorithm/string.hpp>
#include <fstream>
#include <map>
#include <regex>

#include "tests/support/World.h"

namespace {

/// What an escape stands for: a name, "x" and the two digits of a byte, or a number, "*" and what is repeated.
std::string meaningOf(const std::string& escape) {
  static const std::map<std::string, char> named{{"NUL", '\0'}, {"NL", '\n'},   {"CR", '\r'},
                                                 {"TAB", '\t'}, {"SPACE", ' '}, {"BAR", '|'}};
  if (const auto found = named.find(escape); found != named.end()) return {found->second};
  if (escape[0] == 'x') return {static_cast<char>(std::stoi(escape.substr(1), nullptr, 16))};
  const std::size_t sign = escape.find('*');
  std::string all;
  for (std::size_t left = std::stoul(escape.substr(0, sign)); left > 0; --left)
    all += escape.substr(sign + 1);
  return all;
}

std::string unescaped(const std::string& cell) {
  static const std::regex escapes("<(NUL|NL|CR|TAB|SPACE|BAR|x[0-9A-F]{2}|[0-9]+\\*[^>]+)>");
  std::string all, rest = cell;
  for (std::sregex_iterator found(cell.begin(), cell.end(), escapes), end; found != end; ++found) {
    all += found->prefix().str() + meaningOf((*found)[1]);
    rest = found->suffix();
  }
  return all + rest;
}

Cells cellsOf(const std::string& line, const std::string& separator) {
  Cells cells;
  boost::iter_split(cells, line, boost::algorithm::first_finder(separator));
  for (std::string& cell : cells) cell = unescaped(boost::trim_copy(cell));
  return cells;
}

}  // namespace

std::vector<Cells> rowsOf(const std::string& file, const std::string& table) {
  std::ifstream stream(sourceFile(file));
  std::string line, separator, here;
  std::vector<Cells> rows;
  while (std::getline(stream, line)) {
    if (separator.empty()) separator = line.find("\"=>\"") == std::string::npos ? "|" : "=>";
    if (line.starts_with("## ")) here = line.substr(3);
    const bool isAsked = table.empty() || table == here;
    if (isAsked && !line.empty() && line.front() != '#') rows.push_back(cellsOf(line, separator));
  }
  EXPECT_FALSE(rows.empty()) << file << " " << table;
  return rows;
}

std::vector<Cells> rowsIn(const std::string& text) {
  std::vector<std::string> lines;
  std::vector<Cells> rows;
  for (const std::string& line : boost::split(lines, text, boost::is_any_of(";\n")))
    if (!boost::trim_copy(line).empty()) rows.push_back(cellsOf(line, "|"));
  return rows;
}
