#pragma once

#include <optional>

#include "tools/lsp/Requests.h"

namespace tools::lsp {

class Inbox;
struct InputEnded;
struct Message;
struct Rejection;
struct SnapshotChanged;

/// Answers what comes into the inbox, one after the other, on the thread that has activated the host.
class Server {
 public:
  Server(Inbox& inbox, Client& client, SessionFile& session, ClientProcess& process)
      : inbox_(inbox), process_(process), context_{client, session} {}

  /// Until the client says `exit` or is gone. The exit code.
  int run();

 private:
  /// Asked has been answered, but nothing else may be sent to the client yet.
  enum class Phase { Starting, Asked, Running, ShutDown };

  void handle(const Message& message);
  void handle(const Rejection& rejection);
  void handle(const SnapshotChanged& change);
  void handle(const InputEnded& end);

  void request(const Message& message);
  /// As it is sent.
  std::string resultOf(const Message& message);
  std::string initialize(const Json& params);
  void notification(const Message& message);
  void initialized();
  /// Once nothing waits, so that a burst of changes is checked once and never keeps an answer waiting; long documents once
  /// nobody types.
  void publishPending(bool longOnesToo);
  bool isLongPending();

  Inbox& inbox_;
  ClientProcess& process_;
  Context context_;
  Phase phase_ = Phase::Starting;
  bool snapshotChanged_ = false;
  std::optional<int> exitCode_;
};

}  // namespace tools::lsp
