#include "tools/render/Text.h"

#include <algorithm>
#include <boost/algorithm/string/join.hpp>
#include <boost/locale/encoding_utf.hpp>

#include "embedded/Host.h"
#include "host/Members.h"

namespace tools {

namespace {

using boost::algorithm::join;

bool isControl(char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); }

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

std::string lineOfRow(const std::vector<std::string>& row, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t column = 0; column < row.size(); ++column) {
    if (widths[column] > 0)
      line += row[column] + std::string(widths[column] - lengthOf(row[column]) + 2, ' ');
  }
  // A line has no blanks at its end, whatever the last column is.
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

std::vector<std::string> narrowed(const std::vector<std::u16string>& texts) {
  std::vector<std::string> parts;
  for (const std::u16string& text : texts) parts.push_back(narrow(text));
  return parts;
}

}  // namespace

bool isUtf8(const std::string& text) {
  try {
    boost::locale::conv::utf_to_utf<char32_t>(text, boost::locale::conv::stop);
    return true;
  } catch (const boost::locale::conv::conversion_error&) {
    return false;
  }
}

std::string printable(std::u16string text) {
  // Names come from files of others, and must not command the terminal.
  std::replace_if(text.begin(), text.end(), isControl, u'\uFFFD');
  return narrow(text);
}

std::string printable(const std::string& text) { return printable(wide(text)); }

std::string printableLines(std::u16string text) {
  const auto isObeyed = [](char16_t unit) { return isControl(unit) && unit != u'\n' && unit != u'\t'; };
  std::ranges::replace_if(text, isObeyed, u'\uFFFD');
  return narrow(text);
}

std::string joined(const std::vector<std::u16string>& texts, const std::string& separator) {
  return join(narrowed(texts), separator);
}

std::string listed(const std::vector<std::u16string>& texts) {
  std::vector<std::string> parts = narrowed(texts);
  parts.erase(parts.begin(), std::ranges::find_if_not(parts, &std::string::empty));
  return join(parts, ", ");
}

std::string messageOf(const embedded::SnapshotError& error) {
  std::string text = error.file() + ": ";
  if (!error.pointer().empty()) text += error.pointer() + ": ";
  // All three may hold a piece of the file.
  return printable(text + error.reason() + " [" + error.code() + "]");
}

std::string accessWord(std::int32_t level) {
  const std::string_view word = kcos::accessWord(level);
  return word.empty() ? std::to_string(level) : std::string(word);
}

std::string tableOf(const std::vector<std::vector<std::string>>& rows, std::size_t indent) {
  const std::vector<std::size_t> widths = widthsOf(rows);
  std::string table;
  for (const auto& row : rows) table += std::string(indent, ' ') + lineOfRow(row, widths) + '\n';
  return table;
}

}  // namespace tools
