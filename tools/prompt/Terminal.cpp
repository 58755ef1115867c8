#include "tools/prompt/Terminal.h"

#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <boost/locale/encoding_utf.hpp>
#include <cstdlib>
#include <cwchar>
#include <string_view>

namespace tools::prompt {

using boost::locale::conv::utf_to_utf;

TerminalSize terminalSize() {
  TerminalSize size;
  winsize told = {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &told) != 0) return size;
  if (told.ws_col > 0) size.columns = told.ws_col;
  if (told.ws_row > 0) size.rows = told.ws_row;
  return size;
}

std::size_t widthOf(const std::wstring& text) {
  std::size_t width = 0;
  for (const wchar_t character : text) width += static_cast<std::size_t>(std::max(0, wcwidth(character)));
  return width;
}

std::size_t widthOf(const std::string& text) { return widthOf(utf_to_utf<wchar_t>(text)); }

std::string fitted(const std::string& text, std::size_t width) {
  std::wstring wide = utf_to_utf<wchar_t>(text);
  if (widthOf(wide) <= width) return text;
  if (width == 0) return {};
  while (widthOf(wide) > width - 1) wide.pop_back();
  return utf_to_utf<char>(wide) + "\u2026";
}

std::string dim(const std::string& text) {
  const char* const terminal = std::getenv("TERM");
  const bool isPlain = terminal == nullptr || std::string_view(terminal) == "dumb";
  return isPlain ? text : "\x1b[2m" + text + "\x1b[0m";
}

void useUtf8() {
  setlocale(LC_CTYPE, "");
  if (std::string_view(nl_langinfo(CODESET)) != "UTF-8") setlocale(LC_CTYPE, "C.UTF-8");
}

}  // namespace tools::prompt
