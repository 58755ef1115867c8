#include "tools/lsp/Input.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "tools/lsp/Frames.h"

namespace tools::lsp {

Input::Input(int descriptor, Inbox& inbox) : descriptor_(descriptor), inbox_(inbox) {
  if (pipe(stop_) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  thread_ = std::thread([this] { readAll(); });
}

Input::~Input() {
  close(stop_[1]);  // which the other end sees
  thread_.join();
  close(stop_[0]);
}

std::size_t Input::read(char* buffer, std::size_t size) const {
  pollfd ready[] = {{descriptor_, POLLIN, 0}, {stop_[0], POLLIN, 0}};
  while (poll(ready, 2, -1) < 0 && errno == EINTR) continue;
  if (ready[1].revents != 0) return 0;
  ssize_t count = 0;
  do count = ::read(descriptor_, buffer, size);
  while (count < 0 && errno == EINTR);
  return count < 0 ? 0 : static_cast<std::size_t>(count);
}

void Input::readAll() {
  FrameReader frames([this](char* buffer, std::size_t size) { return read(buffer, size); });
  try {
    while (const auto frame = frames.next()) {
      if (!frame->problem.empty()) {
        inbox_.put(Rejection{{}, {ErrorCode::InvalidRequest, frame->problem}});
      } else if (!accept(frame->body)) {
        return;
      }
    }
    inbox_.put(InputEnded{});
  } catch (const BrokenStream& broken) {
    inbox_.put(Rejection{{}, {ErrorCode::ParseError, broken.reason}});
    inbox_.put(InputEnded{broken.reason});
  }
}

bool Input::accept(const std::string& body) {
  try {
    auto message = readMessage(body);
    if (!message) return true;
    if (message->id || (message->method != "$/cancelRequest" && message->method != "exit")) {
      inbox_.put(std::move(*message));
      return true;
    }
    if (message->method == "$/cancelRequest") {
      if (message->params.is_object() && message->params.contains("id")) inbox_.cancel(message->params["id"]);
      return true;
    }
    inbox_.put(std::move(*message));
    return false;
  } catch (Rejection& rejection) {
    inbox_.put(std::move(rejection));
    return true;
  }
}

}  // namespace tools::lsp
