#pragma once

#include <functional>
#include <string>

#include "tools/lsp/Message.h"

namespace tools::lsp {

/// How bad something is that a client is told.
enum class Severity : int { Error = 1, Warning = 2, Info = 3, Log = 4 };

/// The other end: what is said to it. Only the thread that answers says anything.
class Client {
 public:
  /// Writes bytes and answers whether it could.
  using Sink = std::function<bool(const std::string& bytes)>;
  explicit Client(Sink sink);

  void answer(const Json& id, const Json& result);
  void refuse(const Json& id, const ResponseError& error);
  void notify(const std::string& method, const Json& params);
  /// Into the client's log; before the client is initialized, to standard error.
  void log(Severity severity, const std::string& message);
  /// Into the log, and before the user's eyes.
  void show(Severity severity, const std::string& message);

  /// From now on the client takes notifications.
  void setInitialized() noexcept { initialized_ = true; }
  /// Nothing can be written any more.
  bool isGone() const noexcept { return gone_; }

 private:
  void send(const Json& message);

  Sink sink_;
  bool initialized_ = false;
  bool gone_ = false;
};

}  // namespace tools::lsp
