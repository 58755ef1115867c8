#pragma once

#include <atomic>

namespace tools::lsp {

/// The process that has started the server, as far as the client names it. Any thread may ask.
class ClientProcess {
 public:
  /// A process that does not exist here, because the client is on another machine, is not heeded.
  void set(int process) noexcept;
  bool isGone() const noexcept;

 private:
  std::atomic<int> process_ = 0;
};

}  // namespace tools::lsp
