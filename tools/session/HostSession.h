#pragma once

// The session of an embedded host, as the front end asks for it.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "frontend/Session.h"
#include "tools/session/Alarm.h"

namespace tools {

class HostSession final : public frontend::Session {
 public:
  /// The host is active on this thread, and outlives the session. `begun` is called when a request has begun: for what a
  /// request may no longer forget, as it forgets interrupts from before.
  explicit HostSession(embedded::Host& host, std::function<void()> begun = {});
  ~HostSession() override;

  void beginRequest(frontend::CodePolicy policy, frontend::Deadline deadline) override;
  bool stopRequested() const noexcept override { return host_.interruptRequested(); }
  frontend::RequestRecord endRequest() noexcept override;

  std::vector<std::u16string> variableNames() override;
  boost::intrusive_ptr<kxArray_tag> variable(const std::u16string& name) override;
  std::vector<frontend::SessionName> functionNames() override;
  std::vector<frontend::SessionName> classNames() override;
  std::vector<frontend::SessionName> namespaceNames() override;
  std::vector<frontend::SessionName> packageNames() override;
  std::vector<std::u16string> builtinNames() override;

 private:
  class Silence;

  embedded::Host& host_;
  const std::function<void()> begun_;
  Alarm alarm_;
  std::unique_ptr<Silence> silence_;
};

}  // namespace tools
