#include "tools/prompt/History.h"

#include <boost/locale/encoding_utf.hpp>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <new>
#include <utility>

namespace tools::prompt {

namespace {

using boost::locale::conv::utf_to_utf;
namespace fs = std::filesystem;

constexpr int mostLines = 1000;
constexpr std::size_t longestLine = 10'000;

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

/// Only the owner may read what was typed.
void makeFolder(const fs::path& file) {
  std::error_code ignored;
  if (file.has_parent_path()) fs::create_directories(file.parent_path(), ignored);
  // Made empty, and closed to others before anything is in it.
  if (!fs::exists(file, ignored)) std::ofstream(file).flush();
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write, ignored);
}

/// A file that has grown long keeps its end.
void rewrite(const fs::path& file, const std::deque<std::string>& lines) {
  // Beside the file, which another prompt may be reading.
  fs::path next = file;
  next += ".new";
  makeFolder(next);
  std::ofstream stream(next);
  for (const std::string& line : lines) stream << line << '\n';
  stream.close();
  std::error_code ignored;
  if (stream)
    fs::rename(next, file, ignored);
  else
    fs::remove(next, ignored);
}

}  // namespace

fs::path History::usualFile() {
  fs::path folder = variable("XDG_STATE_HOME");
  // A relative folder would be another one in each working folder.
  if (!folder.is_absolute()) {
    const fs::path home = variable("HOME");
    if (home.empty()) return {};
    folder = home / ".local" / "state";
  }
  return folder / "contextdata" / "history";
}

History::History(fs::path file) : file_(std::move(file)), lines_(history_winit()) {
  if (lines_ == nullptr) throw std::bad_alloc();
  HistEventW event = {};
  history_w(lines_.get(), &event, H_SETSIZE, mostLines);
  history_w(lines_.get(), &event, H_SETUNIQUE, 1);
  std::error_code ignored;
  // A pipe would be waited for.
  if (fs::exists(file_, ignored) && !fs::is_regular_file(file_, ignored)) file_.clear();
  if (file_.empty()) return;
  makeFolder(file_);
  read();
}

void History::read() {
  std::ifstream stream(file_);
  std::deque<std::string> lines;
  std::size_t count = 0;
  for (std::string line; std::getline(stream, line); ++count) {
    lines.push_back(line);
    if (lines.size() > mostLines) lines.pop_front();
  }
  for (const std::string& line : lines) remember(utf_to_utf<wchar_t>(line));
  // Not with every line: a file that is a little too long harms nobody.
  if (count > 2 * mostLines) rewrite(file_, lines);
}

void History::remember(const std::wstring& line) {
  HistEventW event = {};
  history_w(lines_.get(), &event, H_ENTER, line.c_str());
}

void History::add(const std::wstring& line) {
  // What is pasted in one piece may be megabytes, and nobody looks for it with the arrow keys.
  if (line.find_first_not_of(L" \t") == std::wstring::npos || line.size() > longestLine) return;
  remember(line);
  // At once, and at the end of the file: several prompts may share it, and one may die.
  if (!file_.empty()) std::ofstream(file_, std::ios::app) << utf_to_utf<char>(line) + '\n';
}

}  // namespace tools::prompt
