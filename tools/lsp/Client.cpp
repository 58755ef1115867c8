#include "tools/lsp/Client.h"

#include <signal.h>

#include <cerrno>
#include <iostream>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/lsp/Input.h"
#include "tools/render/Text.h"

namespace tools::lsp {

namespace {

/// A process that may not be signalled exists.
bool exists(int process) { return process > 0 && (kill(process, 0) == 0 || errno != ESRCH); }

Json orNull(const SharedJson& json) { return json ? *json : Json(); }

}  // namespace

Client::Client(Sink sink) : sink_(std::move(sink)) {}

void Client::send(const std::string& message) { gone_ = gone_ || !sink_(frameOf(message)); }

void Client::answer(const SharedJson& id, const std::string& result) {
  send("{\"id\":" + textOf(orNull(id)) + ",\"jsonrpc\":\"2.0\",\"result\":" + result + "}");
}

void Client::refuse(const SharedJson& id, const ResponseError& error) {
  const Json content = {{"code", static_cast<int>(error.code)}, {"message", error.message}};
  send(textOf({{"jsonrpc", "2.0"}, {"id", orNull(id)}, {"error", content}}));
}

void Client::publish(const std::string& uri, const std::vector<Diagnostic>& diagnostics,
                     std::optional<std::int64_t> version) {
  Json list = Json::array();
  for (const Diagnostic& diagnostic : diagnostics) {
    list.push_back({{"range", jsonOf(diagnostic.range)},
                    {"severity", static_cast<int>(Severity::Error)},
                    {"code", diagnostic.code},
                    {"source", "contextdata"},
                    {"message", diagnostic.message}});
  }
  Json params = {{"uri", uri}, {"diagnostics", std::move(list)}};
  if (version) params["version"] = *version;
  notify("textDocument/publishDiagnostics", params);
}

void Client::notify(const std::string& method, const Json& params) {
  send(textOf({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}}));
}

void Client::log(Severity severity, const std::string& message) {
  // Before, the protocol allows no such messages.
  if (initialized_) {
    notify("window/logMessage", {{"type", static_cast<int>(severity)}, {"message", message}});
  } else {
    std::cerr << "contextdata: " << printable(message) << '\n';
  }
}

void Client::logOutcome(const std::string& request, const frontend::Outcome& outcome) {
  using frontend::Status;
  const std::string head = request + ": " + frontend::nameOf(outcome.status) + ": ";
  if (outcome.status == Status::Failed || outcome.status == Status::FailedCode) {
    log(Severity::Warning, head + narrow(outcome.reason));
  } else if (outcome.status == Status::RefusedCode || outcome.status == Status::TimedOut) {
    log(Severity::Log, head + narrow(outcome.reason));
  }
  if (!outcome.printed.empty()) log(Severity::Log, "printed meanwhile: " + narrow(outcome.printed));
}

void Client::show(Severity severity, const std::string& message) {
  // Also in the log, because a message that is shown is gone with a click.
  log(severity, message);
  if (!initialized_) return;
  notify("window/showMessage", {{"type", static_cast<int>(severity)}, {"message", message}});
}

void ClientProcess::set(int process) noexcept { process_ = exists(process) ? process : 0; }

bool ClientProcess::isGone() const noexcept {
  const int process = process_;
  return process != 0 && !exists(process);
}

}  // namespace tools::lsp
