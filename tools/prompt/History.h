#pragma once

#include <histedit.h>

#include <filesystem>
#include <memory>
#include <string>

namespace tools::prompt {

/// The lines that were typed, kept in a file from one session to the next. A file that cannot be read or written is no
/// failure: then they are forgotten.
class History {
 public:
  /// An empty path: no file.
  explicit History(std::filesystem::path file);

  void add(const std::wstring& line);
  HistoryW* lines() const noexcept { return lines_.get(); }

  /// $XDG_STATE_HOME/contextdata/history, or the one below ~/.local/state; empty where there is no home.
  static std::filesystem::path usualFile();

 private:
  struct End {
    void operator()(HistoryW* lines) const noexcept { history_wend(lines); }
  };

  void read();
  void remember(const std::wstring& line);

  std::filesystem::path file_;
  std::unique_ptr<HistoryW, End> lines_;
};

}  // namespace tools::prompt
