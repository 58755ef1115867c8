#pragma once

// What waits for the thread that answers: the only thing that the threads of the server share.

#include <chrono>
#include <condition_variable>
#include <cstddef>
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

/// Why a request that waits need not be worked on any more; it is answered all the same, with an error and in its turn.
enum class Dropped { No, Cancelled, Outdated };

/// Requests are answered one at a time, in the order in which they came. The one being answered is the current one, and an
/// interrupt for it reaches no other one.
class Inbox {
 public:
  /// What waits has a limit, so a client that is faster than its answers is not read on until there is room; only messages
  /// count. A change of a document makes the requests before it outdated that ask about a place in it.
  void put(Event event, std::size_t bytes = 0);
  /// Nothing waits for room any more, and what is put is lost.
  void close();

  /// Waits for an event and takes it. A request becomes the current one.
  Event take();
  bool isEmpty() const;
  /// Waits for an event, but no longer than that; is there one?
  bool hasWithin(std::chrono::milliseconds time);

  /// Interrupts the current request, or notes that one that waits is cancelled; does nothing for one that is answered, or unknown.
  void cancel(const Json& id);
  /// Has the current request been cancelled?
  bool isCancelled() const;
  /// Why the current request was dropped while it waited.
  Dropped dropped() const;
  /// The current request has been answered.
  void finish();

  /// The host that the current request is interrupted through, from now on; null for none.
  void attach(embedded::Host* host);
  /// Interrupts the host again when the current request is cancelled: for after somebody has forgotten an interrupt.
  void renewInterrupt();

 private:
  struct Entry {
    Event event;
    std::size_t bytes = 0;
    Dropped dropped = Dropped::No;
  };

  /// From now on the entry is no more than what its answer needs.
  void drop(Entry& entry, Dropped why);
  void dropOutdated(const Message& change);

  static constexpr std::size_t mostWaiting = 1000;
  static constexpr std::size_t mostBytes = std::size_t{64} << 20;

  mutable std::mutex mutex_;
  std::condition_variable arrived_;
  std::condition_variable room_;
  std::deque<Entry> waiting_;
  std::size_t bytes_ = 0;
  bool isClosed_ = false;
  SharedJson current_;
  bool cancelled_ = false;
  Dropped dropped_ = Dropped::No;
  embedded::Host* host_ = nullptr;
};

}  // namespace tools::lsp
