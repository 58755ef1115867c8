#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "frontend/Session.h"
#include "tools/lsp/Inbox.h"
#include "tools/session/HostSession.h"

namespace tools::lsp {

/// A host's session whose requests a client can cancel, also before they have begun.
class CancellableSession final : public frontend::Session {
 public:
  CancellableSession(embedded::Host& host, Inbox& inbox) : session_(host), inbox_(inbox) {}

  void beginRequest(frontend::CodePolicy policy, frontend::Deadline deadline) override {
    session_.beginRequest(policy, deadline);
    inbox_.renewInterrupt();
  }
  bool stopRequested() const noexcept override { return session_.stopRequested(); }
  frontend::RequestRecord endRequest() noexcept override { return session_.endRequest(); }

  std::vector<std::u16string> variableNames() override { return session_.variableNames(); }
  boost::intrusive_ptr<kxArray_tag> variable(const std::u16string& name) override {
    return session_.variable(name);
  }
  std::vector<frontend::SessionName> functionNames() override { return session_.functionNames(); }
  std::vector<frontend::SessionName> classNames() override { return session_.classNames(); }
  std::vector<frontend::SessionName> namespaceNames() override { return session_.namespaceNames(); }
  std::vector<frontend::SessionName> packageNames() override { return session_.packageNames(); }

 private:
  HostSession session_;
  Inbox& inbox_;
};

}  // namespace tools::lsp
