#include "tools/lsp/Server.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <variant>

#include "tools/lsp/Diagnostics.h"
#include "tools/lsp/Inbox.h"
#include "tools/session/Process.h"

namespace tools::lsp {

namespace {

/// How long nobody types who does not type at the moment.
constexpr std::chrono::milliseconds quiet{1000};

ResponseError cancelled() { return {ErrorCode::RequestCancelled, "the request was cancelled"}; }

}  // namespace

int Server::run() {
  while (!exitCode_) {
    // Reading a long document takes longer than a key may, so it waits until nobody types.
    if (isLongPending() && !inbox_.hasWithin(quiet)) publishPending(true);
    const Event event = inbox_.take();
    std::visit([this](const auto& what) { handle(what); }, event);
    // After every event, also one that is no request: an interrupt must not outlive what it was meant for.
    inbox_.finish();
    if (!exitCode_ && context_.client.isGone()) {
      std::cerr << "contextdata: cannot write to the client [command.output]\n";
      exitCode_ = NoAnswer;
    }
    // Checking documents waits until nobody waits for an answer.
    if (!exitCode_ && inbox_.isEmpty()) publishPending(false);
  }
  return *exitCode_;
}

void Server::handle(const Message& message) {
  if (message.id) {
    request(message);
  } else {
    notification(message);
  }
}

void Server::handle(const Rejection& rejection) { context_.client.refuse(rejection.id, rejection.error); }

void Server::handle(const SnapshotChanged&) {
  // A client that is not ready is sent no notifications, and a reload comes with one: it waits for `initialized`.
  snapshotChanged_ = phase_ != Phase::Running;
  if (phase_ == Phase::Running) context_.session.reload(context_.client);
}

void Server::handle(const InputEnded& end) {
  if (!end.reason.empty()) std::cerr << "contextdata: " << end.reason << " [serve.broken-input]\n";
  exitCode_ = phase_ == Phase::ShutDown && end.reason.empty() ? Answered : NoAnswer;
}

void Server::request(const Message& message) {
  try {
    if (inbox_.isCancelled()) throw cancelled();  // while it waited
    if (inbox_.dropped() == Dropped::Outdated)
      throw ResponseError{ErrorCode::ContentModified, "the document has changed since"};
    const std::string result = resultOf(message);
    if (inbox_.isCancelled()) throw cancelled();  // an interrupted query returns what it has found so far
    context_.client.answer(message.id, result);
  } catch (const ResponseError& error) {
    context_.client.refuse(message.id, error);
  } catch (const std::exception& error) {
    // One request fails, and the server goes on.
    context_.client.refuse(message.id, {ErrorCode::InternalError, error.what()});
  }
}

std::string Server::resultOf(const Message& message) {
  if (phase_ == Phase::ShutDown)
    throw ResponseError{ErrorCode::InvalidRequest, "the server has been shut down"};
  if (message.method == "initialize") return initialize(*message.params);
  if (phase_ == Phase::Starting) {
    throw ResponseError{ErrorCode::ServerNotInitialized, "\"initialize\" comes first"};
  }
  if (message.method == "shutdown") {
    phase_ = Phase::ShutDown;
    return "null";
  }
  return resultOfRequest(context_, message.method, *message.params);
}

std::string Server::initialize(const Json& params) {
  if (phase_ != Phase::Starting) throw ResponseError{ErrorCode::InvalidRequest, "\"initialize\" comes once"};
  context_.abilities = abilitiesOf(params);
  context_.documents.setEncoding(context_.abilities.encoding);
  process_.set(context_.abilities.process);
  // Last: parameters that are refused leave the client another try.
  phase_ = Phase::Asked;
  return serverAbilities(context_.abilities);
}

void Server::notification(const Message& message) {
  if (message.method == "exit") {
    exitCode_ = phase_ == Phase::ShutDown ? Answered : NoAnswer;
    return;
  }
  if (message.method == "initialized" && phase_ == Phase::Asked) return initialized();
  // The protocol lets other notifications drop before it is initialized and after it is shut down.
  if (phase_ != Phase::Asked && phase_ != Phase::Running) return;
  try {
    handleNotification(context_, message.method, *message.params);
  } catch (const ResponseError& error) {
    context_.client.log(Severity::Warning, message.method + ": " + error.message);
  }
}

void Server::initialized() {
  phase_ = Phase::Running;
  context_.client.setInitialized();
  if (snapshotChanged_) handle(SnapshotChanged{});
}

bool Server::isLongPending() {
  return phase_ == Phase::Running && std::ranges::any_of(context_.documents.all(), [](const auto& entry) {
           return !entry.second.isChecked && entry.second.isLong();
         });
}

void Server::publishPending(bool longOnesToo) {
  if (phase_ != Phase::Running) return;
  for (auto& [uri, document] : context_.documents.all()) {
    if (!document.isChecked && (longOnesToo || !document.isLong())) {
      // For the next key.
      if (document.isLong()) document.outline();
      publishDiagnostics(context_.client, uri, document, context_.abilities.versionedDiagnostics);
    }
  }
}

}  // namespace tools::lsp
