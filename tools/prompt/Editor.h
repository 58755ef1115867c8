#pragma once

#include <histedit.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tools/prompt/Completer.h"
#include "tools/prompt/Conversation.h"
#include "tools/prompt/History.h"
#include "tools/prompt/Terminal.h"

namespace tools::prompt {

/// Lines that somebody types at a terminal. Only TAB completes; what Enter ends is taken as it was typed.
class Editor final : public LineSource {
 public:
  Editor(Completer& completer, History& history);
  InputLine next(const std::u16string& before) override;

 private:
  struct End {
    void operator()(EditLine* line) const noexcept { el_end(line); }
  };

  static Editor& of(EditLine* line);
  static int readCharacter(EditLine* line, wchar_t* character);
  static unsigned char onTab(EditLine* line, int key);

  unsigned char complete();
  bool replace(const Completed& completed);
  void show(const std::vector<std::string>& lines);
  bool wantsMore(std::size_t left);
  /// Leaves the line that is being typed as it is, also when it takes several rows, for a row below it.
  void goBelow();

  Completer& completer_;
  History& history_;
  Keyboard keyboard_;
  std::unique_ptr<EditLine, End> line_;
  std::u16string before_;
  bool isAbandoned_ = false;
  std::size_t keys_ = 0;
  /// How many keys there had been after the latest TAB.
  std::size_t keysAtTab_ = 0;
};

}  // namespace tools::prompt
