#include "tools/prompt/PlainLines.h"

#include <boost/locale/encoding_utf.hpp>
#include <cstdio>
#include <string>

#include "tools/render/JsonText.h"

namespace tools::prompt {

namespace {

/// Keeps one character more than a line may have; false at the end of the input.
bool readLine(std::istream& input, std::string& line) {
  std::streambuf& buffer = *input.rdbuf();
  int character = buffer.sbumpc();
  if (character == EOF) return false;
  for (; character != '\n' && character != EOF; character = buffer.sbumpc()) {
    if (line.size() <= PlainLines::longestLine) line.push_back(static_cast<char>(character));
  }
  return true;
}

}  // namespace

InputLine PlainLines::next(const std::u16string&) {
  std::string line;
  if (!readLine(input_, line)) return {InputLine::End};
  if (line.size() > longestLine)
    return {InputLine::Unreadable, u"the line has more than 4 MiB [prompt.too-long]"};
  if (!isUtf8(line)) return {InputLine::Unreadable, u"the line is no UTF-8 text [prompt.not-utf8]"};
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return {InputLine::Text, boost::locale::conv::utf_to_utf<char16_t>(line)};
}

}  // namespace tools::prompt
