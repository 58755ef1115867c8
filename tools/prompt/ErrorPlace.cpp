#include "tools/prompt/ErrorPlace.h"

#include <algorithm>
#include <cstddef>

#include "tools/prompt/Terminal.h"
#include "tools/render/Text.h"

namespace tools::prompt {

namespace {

/// Characters of a line around its place; more are not shown.
constexpr std::size_t mostAround = 30;

std::u16string lineOf(const std::u16string& text, int number) {
  std::size_t begin = 0;
  for (; number > 1 && begin != std::u16string::npos; --number) {
    begin = text.find(u'\n', begin);
    if (begin != std::u16string::npos) ++begin;
  }
  if (begin == std::u16string::npos) return {};
  return text.substr(begin, text.find(u'\n', begin) - begin);
}

bool isLead(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

/// The line, and below it the caret; nothing of a line that is blank.
std::string markedLine(std::u16string line, std::size_t place) {
  if (line.find_first_not_of(u" \t") == std::u16string::npos) return {};
  std::ranges::replace(line, u'\t', u' ');
  place = std::min(place, line.size());
  std::size_t begin = place > mostAround ? place - mostAround : 0;
  std::size_t end = std::min(line.size(), place + mostAround);
  if (begin > 0 && isLead(line[begin - 1])) ++begin;
  if (end < line.size() && isLead(line[end - 1])) --end;
  const std::string left = (begin > 0 ? "..." : "") + printable(line.substr(begin, place - begin));
  const std::string right = printable(line.substr(place, end - place)) + (end < line.size() ? "..." : "");
  return "  " + left + right + "\n  " + std::string(widthOf(left), ' ') + "^\n";
}

}  // namespace

std::string describe(const embedded::CodeFailure& failure, const std::u16string& text, int firstLine) {
  const bool isTyped = failure.source == "expression";
  const int line = isTyped ? failure.line + firstLine - 1 : failure.line;
  const std::string source = isTyped ? "input" : printable(failure.source);
  const auto column = static_cast<std::size_t>(std::max(1, failure.column));
  return (isTyped ? markedLine(lineOf(text, failure.line), column - 1) : std::string()) + source + ":" +
         std::to_string(line) + ":" + std::to_string(failure.column) + ": " + printable(failure.message) +
         " [" + printable(failure.id) + "]\n";
}

}  // namespace tools::prompt
