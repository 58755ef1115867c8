#pragma once

#include <cstddef>
#include <thread>

#include "tools/lsp/Inbox.h"

namespace tools::lsp {

/// The thread that reads what the client sends. It puts messages into the inbox and cancels requests there; it does
/// nothing else, so that a request can be cancelled while another one is answered.
class Input {
 public:
  /// Reads a file descriptor until it ends, until the client says `exit`, or until this is destroyed.
  Input(int descriptor, Inbox& inbox);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

 private:
  void readAll();
  /// False: nothing more is wanted.
  bool accept(const std::string& body);
  std::size_t read(char* buffer, std::size_t size) const;

  const int descriptor_;
  Inbox& inbox_;
  int stop_[2] = {-1, -1};  // a pipe: what is written to the second end ends the reading
  std::thread thread_;
};

}  // namespace tools::lsp
