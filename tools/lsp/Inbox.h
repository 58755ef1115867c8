#pragma once

// What waits for the thread that answers: the only thing that the threads of the server share.

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <variant>

#include "embedded/Host.h"
#include "tools/lsp/Message.h"

namespace tools::lsp {

/// The file of the session has another state than before.
struct SnapshotChanged {};

/// Nothing more will come. With a reason: not as the protocol says.
struct InputEnded {
  std::string reason;
};

using Event = std::variant<Message, Rejection, SnapshotChanged, InputEnded>;

/// Requests are answered one at a time, in the order in which they came. The one being answered is the current one, and an
/// interrupt for it reaches no other one.
class Inbox {
 public:
  void put(Event event);

  /// Waits for an event and takes it. A request becomes the current one.
  Event take();
  bool isEmpty() const;

  /// Interrupts the current request, or notes that one that waits is cancelled; does nothing for one that is answered, or unknown.
  void cancel(const Json& id);
  /// Has the current request been cancelled?
  bool isCancelled() const;
  /// The current request has been answered.
  void finish();

  /// The host that the current request is interrupted through, from now on; null for none.
  void attach(embedded::Host* host);
  /// Interrupts the host again when the current request is cancelled: for after somebody has forgotten an interrupt.
  void renewInterrupt();

 private:
  struct Entry {
    Event event;
    bool cancelled = false;
  };

  mutable std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<Entry> waiting_;
  SharedJson current_;
  bool cancelled_ = false;
  embedded::Host* host_ = nullptr;
};

}  // namespace tools::lsp
