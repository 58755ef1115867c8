#include "tools/prompt/Editor.h"

#include <algorithm>
#include <boost/locale/encoding_utf.hpp>
#include <iostream>
#include <new>

#include "tools/prompt/Terminal.h"
#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

using boost::locale::conv::utf_to_utf;

wchar_t firstPrompt[] = L"korval> ";
wchar_t nextPrompt[] = L"   ...> ";

std::u16string unitsOf(const wchar_t* begin, const wchar_t* end) { return utf_to_utf<char16_t>(begin, end); }

/// Characters of UTF-16 text.
int charactersOf(const std::u16string& text) { return static_cast<int>(utf_to_utf<wchar_t>(text).size()); }

}  // namespace

Editor::Editor(Completer& completer, History& history)
    : completer_(completer), history_(history), line_(el_init("contextdata", stdin, stdout, stderr)) {
  if (line_ == nullptr) throw std::bad_alloc();
  EditLine* const line = line_.get();
  el_wset(line, EL_CLIENTDATA, this);
  el_wset(line, EL_GETCFN, readCharacter);
  el_wset(line, EL_EDITOR, L"emacs");
  el_wset(line, EL_HIST, history_w, history.lines());
  el_wset(line, EL_BIND, L"^R", L"em-inc-search-prev", nullptr);
  // The user's own settings: after the usual ones, which they may change, and before TAB, which they may not.
  el_source(line, nullptr);
  el_wset(line, EL_ADDFN, L"complete-name", L"Complete the name before the cursor", onTab);
  el_wset(line, EL_BIND, L"^I", L"complete-name", nullptr);
}

Editor& Editor::of(EditLine* line) {
  void* editor = nullptr;
  el_wget(line, EL_CLIENTDATA, &editor);
  return *static_cast<Editor*>(editor);
}

int Editor::readCharacter(EditLine* line, wchar_t* character) {
  Editor& editor = of(line);
  while (true) {
    switch (editor.keyboard_.next(*character)) {
      case Keyboard::Character:
        ++editor.keys_;
        return 1;
      case Keyboard::Interrupt:
        editor.isAbandoned_ = true;
        return -1;
      case Keyboard::Resized:
        el_resize(line);
        break;
      case Keyboard::Resumed:
        el_wset(line, EL_PREP_TERM, 0);  // it may be set up otherwise by now, which the editor does not know
        el_wset(line, EL_PREP_TERM, 1);
        el_wset(line, EL_REFRESH);
        break;
      case Keyboard::End:
        return 0;
    }
  }
}

InputLine Editor::next(const std::u16string& before) {
  before_ = before;
  isAbandoned_ = false;
  el_wset(
      line_.get(), EL_PROMPT,
      before.empty() ? +[](EditLine*) { return firstPrompt; } : +[](EditLine*) { return nextPrompt; });
  el_wset(line_.get(), EL_PREP_TERM, 1);  // before the prompt is there, so that nothing is typed too early
  int count = 0;
  const wchar_t* const typed = el_wgets(line_.get(), &count);
  if (isAbandoned_) {
    goBelow();
    el_reset(line_.get());
    return {InputLine::Abandoned};
  }
  if (typed == nullptr || count <= 0) {
    std::cout << std::endl;
    return {InputLine::End};
  }
  std::wstring text(typed, static_cast<std::size_t>(count));
  while (!text.empty() && (text.back() == L'\n' || text.back() == L'\r')) text.pop_back();
  // Each line by itself, as the arrow keys bring them back.
  history_.add(text);
  return {InputLine::Text, utf_to_utf<char16_t>(text)};
}

unsigned char Editor::onTab(EditLine* line, int) {
  try {
    return of(line).complete();
  } catch (...) {
    return CC_ERROR;  // no exception may pass through the editor, which is not C++
  }
}

unsigned char Editor::complete() {
  const LineInfoW& typed = *el_wline(line_.get());
  const std::u16string ahead = unitsOf(typed.buffer, typed.cursor);
  // In a block that goes on there is nothing to complete at the beginning of a line.
  const bool isIndenting = !before_.empty() && ahead.find_first_not_of(u" \t") == std::u16string::npos;
  if (isIndenting) return el_winsertstr(line_.get(), L"  ") == 0 ? CC_REFRESH : CC_ERROR;
  // Only TAB has been typed since the last one.
  const bool isSecond = keys_ == keysAtTab_ + 1;
  const std::u16string text = before_ + unitsOf(typed.buffer, typed.lastchar);
  const Completed completed =
      completer_.complete(text, before_.size() + ahead.size(), isSecond, terminalSize().columns);
  takeInterrupt();  // it was for the completion, and the line stays
  const bool isReplaced = replace(completed);
  if (!completed.lines.empty()) {
    goBelow();
    show(completed.lines);
    el_wset(line_.get(), EL_REFRESH);
  }
  keysAtTab_ = keys_;
  // The line has been shown anew below the list already.
  if (!completed.lines.empty()) return CC_NORM;
  return isReplaced ? CC_REFRESH : CC_REFRESH_BEEP;
}

/// What is replaced is in the line that is being typed, or nothing is.
bool Editor::replace(const Completed& completed) {
  if (completed.begin < before_.size()) return false;
  const LineInfoW& typed = *el_wline(line_.get());
  const std::u16string text = unitsOf(typed.buffer, typed.lastchar);
  const std::size_t begin = completed.begin - before_.size();
  const std::u16string replaced = text.substr(begin, completed.end - completed.begin);
  if (replaced == completed.insertion) return false;
  const int cursor = charactersOf(unitsOf(typed.buffer, typed.cursor));
  el_cursor(line_.get(), charactersOf(text.substr(0, begin)) + charactersOf(replaced) - cursor);
  // It deletes before the cursor, which therefore stands at the end of what is replaced.
  el_deletestr(line_.get(), charactersOf(replaced));
  el_winsertstr(line_.get(), utf_to_utf<wchar_t>(completed.insertion).c_str());
  return true;
}

void Editor::show(const std::vector<std::string>& lines) {
  const std::size_t page = std::max<std::size_t>(2, terminalSize().rows) - 1;
  std::size_t shown = 0;
  for (const std::string& line : lines) {
    if (shown > 0 && shown % page == 0 && !wantsMore(lines.size() - shown)) break;
    std::cout << line << '\n';
    ++shown;
  }
  std::cout << std::flush;
}

bool Editor::wantsMore(std::size_t left) {
  const std::string question = std::to_string(left) + " more lines: space shows them, any other key does not";
  std::cout << dim(fitted(question, terminalSize().columns - 1)) << std::flush;
  wchar_t key = 0;
  const bool isRead = el_wgetc(line_.get(), &key) == 1;
  isAbandoned_ = false;  // Ctrl-C ends the list
  // With blanks, because not every terminal can clear a line.
  std::cout << '\r' << std::string(std::min(widthOf(question), terminalSize().columns - 1), ' ') << '\r'
            << std::flush;
  return isRead && (key == L' ' || key == L'\t');
}

void Editor::goBelow() {
  const LineInfoW& typed = *el_wline(line_.get());
  const std::size_t columns = terminalSize().columns;
  const std::size_t prompt = widthOf(std::wstring(firstPrompt));
  const std::size_t toCursor = prompt + widthOf(std::wstring(typed.buffer, typed.cursor));
  const std::size_t whole = prompt + widthOf(std::wstring(typed.buffer, typed.lastchar));
  std::cout << std::string(whole / columns - toCursor / columns, '\n') << '\n' << std::flush;
}

}  // namespace tools::prompt
