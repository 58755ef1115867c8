#include "tools/lsp/Client.h"

#include <iostream>
#include <utility>

#include "tools/lsp/Frames.h"

namespace tools::lsp {

Client::Client(Sink sink) : sink_(std::move(sink)) {}

void Client::send(const Json& message) {
  gone_ = gone_ || !sink_(frameOf(message.dump(-1, ' ', false, Json::error_handler_t::replace)));
}

void Client::answer(const Json& id, const Json& result) {
  send({{"jsonrpc", "2.0"}, {"id", id}, {"result", result}});
}

void Client::refuse(const Json& id, const ResponseError& error) {
  const Json content = {{"code", static_cast<int>(error.code)}, {"message", error.message}};
  send({{"jsonrpc", "2.0"}, {"id", id}, {"error", content}});
}

void Client::notify(const std::string& method, const Json& params) {
  send({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}});
}

void Client::log(Severity severity, const std::string& message) {
  if (initialized_) {
    notify("window/logMessage", {{"type", static_cast<int>(severity)}, {"message", message}});
  } else {
    std::cerr << "contextdata: " << message << '\n';
  }
}

void Client::show(Severity severity, const std::string& message) {
  log(severity, message);
  if (!initialized_) return;
  notify("window/showMessage", {{"type", static_cast<int>(severity)}, {"message", message}});
}

}  // namespace tools::lsp
