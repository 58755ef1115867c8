#include "tools/lsp/Inbox.h"

#include <utility>

namespace tools::lsp {

namespace {

bool isRequest(const Event& event, const Json& id) {
  const auto* message = std::get_if<Message>(&event);
  return message != nullptr && isId(message->id, id);
}

}  // namespace

void Inbox::put(Event event) {
  const std::lock_guard lock(mutex_);
  waiting_.push_back({std::move(event)});
  arrived_.notify_one();
}

Event Inbox::take() {
  std::unique_lock lock(mutex_);
  arrived_.wait(lock, [&] { return !waiting_.empty(); });
  Entry entry = std::move(waiting_.front());
  waiting_.pop_front();
  // Under the lock that cancel() needs: a request is waiting or current, and never neither.
  if (const auto* message = std::get_if<Message>(&entry.event)) current_ = message->id;
  cancelled_ = entry.cancelled;
  return std::move(entry.event);
}

bool Inbox::isEmpty() const {
  const std::lock_guard lock(mutex_);
  return waiting_.empty();
}

void Inbox::cancel(const Json& id) {
  const std::lock_guard lock(mutex_);
  if (isId(current_, id)) {
    cancelled_ = true;
    if (host_ != nullptr) host_->requestInterrupt();
    return;
  }
  // Kept in its place: it is answered, too, with an error, and in order.
  for (Entry& entry : waiting_) {
    if (isRequest(entry.event, id)) entry.cancelled = true;
  }
}

bool Inbox::isCancelled() const {
  const std::lock_guard lock(mutex_);
  return cancelled_;
}

void Inbox::finish() {
  const std::lock_guard lock(mutex_);
  current_.reset();
  cancelled_ = false;
  if (host_ != nullptr) host_->clearInterrupt();  // it was for this request, and came too late for it
}

void Inbox::attach(embedded::Host* host) {
  const std::lock_guard lock(mutex_);
  // Under the lock: cancel() comes from another thread, and must not meet a host that is going.
  host_ = host;
}

void Inbox::renewInterrupt() {
  const std::lock_guard lock(mutex_);
  if (cancelled_ && host_ != nullptr) host_->requestInterrupt();
}

}  // namespace tools::lsp
