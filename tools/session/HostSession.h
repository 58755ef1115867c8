#pragma once

// The session of an embedded host, as the front end asks for it.

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "frontend/Session.h"
#include "tools/session/Alarm.h"

namespace tools {

class HostSession final : public frontend::Session {
 public:
  /// The host is active on this thread, and outlives the session.
  explicit HostSession(embedded::Host& host);
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

 private:
  class Silence;

  embedded::Host& host_;
  Alarm alarm_;
  std::unique_ptr<Silence> silence_;
};

}  // namespace tools
