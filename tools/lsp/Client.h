#pragma once

// The other end: what is said to it, and whether it is still there.

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "frontend/Request.h"
#include "tools/lsp/Message.h"

namespace tools::lsp {

/// How bad something is that a client is told.
enum class Severity : int { Error = 1, Warning = 2, Info = 3, Log = 4 };

/// An error in a file.
struct Diagnostic {
  Range range;
  std::string code;
  std::string message;
};

/// Only the thread that answers says anything, so that messages never mix.
class Client {
 public:
  /// Writes bytes and returns whether it could.
  using Sink = std::function<bool(const std::string& bytes)>;
  explicit Client(Sink sink);

  /// The result is JSON as it is sent.
  void answer(const SharedJson& id, const std::string& result);
  void refuse(const SharedJson& id, const ResponseError& error);
  /// All that is wrong with a file; with a version, that one of its versions.
  void publish(const std::string& uri, const std::vector<Diagnostic>& diagnostics,
               std::optional<std::int64_t> version = {});
  /// Into the client's log; before the client is initialized, to standard error.
  void log(Severity severity, const std::string& message);
  /// Leaves a line in the log when an answer is not all there is, for whoever wonders why.
  void logOutcome(const std::string& request, const frontend::Outcome& outcome);
  /// Into the log, and before the user's eyes.
  void show(Severity severity, const std::string& message);

  /// From now on the client may be sent notifications.
  void setInitialized() noexcept { initialized_ = true; }
  /// Nothing can be written any more.
  bool isGone() const noexcept { return gone_; }

 private:
  void notify(const std::string& method, const Json& params);
  void send(const std::string& message);

  Sink sink_;
  bool initialized_ = false;
  bool gone_ = false;
};

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
