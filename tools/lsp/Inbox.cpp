#include "tools/lsp/Inbox.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace tools::lsp {

namespace {

bool isRequest(const Event& event, const Json& id) {
  const auto* message = std::get_if<Message>(&event);
  return message != nullptr && isId(message->id, id);
}

bool isMessage(const Event& event) { return std::holds_alternative<Message>(event); }

/// What is asked about a place is of no use once the text there is another one.
bool asksAboutAPlace(const std::string& method) {
  return method == "textDocument/completion" || method == "textDocument/hover" ||
         method == "textDocument/signatureHelp";
}

const Json& documentOf(const Message& message) { return valueAt(*message.params, "/textDocument/uri"); }

}  // namespace

void Inbox::put(Event event, std::size_t bytes) {
  std::unique_lock lock(mutex_);
  if (isMessage(event)) {
    // One that is larger than all may be waits until it is alone.
    room_.wait(lock, [&] {
      return isClosed_ || waiting_.empty() || (waiting_.size() < mostWaiting && bytes_ + bytes <= mostBytes);
    });
  }
  if (isClosed_) return;
  const auto* message = std::get_if<Message>(&event);
  if (message != nullptr && message->method == "textDocument/didChange") dropOutdated(*message);
  bytes_ += bytes;
  waiting_.push_back({std::move(event), bytes});
  arrived_.notify_one();
}

void Inbox::close() {
  const std::lock_guard lock(mutex_);
  isClosed_ = true;
  room_.notify_all();
}

void Inbox::drop(Entry& entry, Dropped why) {
  entry.dropped = why;
  std::get<Message>(entry.event).params = std::make_shared<const Json>();
  bytes_ -= std::exchange(entry.bytes, 0);
  room_.notify_all();
}

void Inbox::dropOutdated(const Message& change) {
  for (Entry& entry : waiting_) {
    const auto* message = std::get_if<Message>(&entry.event);
    if (message == nullptr || !message->id || entry.dropped != Dropped::No) continue;
    if (asksAboutAPlace(message->method) && documentOf(*message) == documentOf(change))
      drop(entry, Dropped::Outdated);
  }
}

Event Inbox::take() {
  std::unique_lock lock(mutex_);
  arrived_.wait(lock, [&] { return !waiting_.empty(); });
  Entry entry = std::move(waiting_.front());
  waiting_.pop_front();
  bytes_ -= entry.bytes;
  room_.notify_all();
  // Under the lock that cancel() needs: a request is waiting or current, and never neither.
  if (const auto* message = std::get_if<Message>(&entry.event)) current_ = message->id;
  dropped_ = entry.dropped;
  cancelled_ = entry.dropped == Dropped::Cancelled;
  return std::move(entry.event);
}

bool Inbox::hasWithin(std::chrono::milliseconds time) {
  std::unique_lock lock(mutex_);
  return arrived_.wait_for(lock, time, [&] { return !waiting_.empty(); });
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
    if (isRequest(entry.event, id)) drop(entry, Dropped::Cancelled);
  }
}

bool Inbox::isCancelled() const {
  const std::lock_guard lock(mutex_);
  return cancelled_;
}

Dropped Inbox::dropped() const {
  const std::lock_guard lock(mutex_);
  return dropped_;
}

void Inbox::finish() {
  const std::lock_guard lock(mutex_);
  current_.reset();
  cancelled_ = false;
  dropped_ = Dropped::No;
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
