#include "tools/prompt/Lines.h"

#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools::prompt {

InputLine PlainLines::next(const std::u16string&) {
  std::string line;
  if (!readLine(input_, line, longestLine)) return {InputLine::End};
  if (line.size() > longestLine)
    return {InputLine::Unreadable, u"the line has more than 4 MiB [prompt.too-long]"};
  if (!isUtf8(line)) return {InputLine::Unreadable, u"the line is no UTF-8 text [prompt.not-utf8]"};
  // Files from elsewhere.
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return {InputLine::Text, wide(line)};
}

}  // namespace tools::prompt
