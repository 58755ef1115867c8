#pragma once

#include <map>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "frontend/Completion.h"
#include "tests/support/Trap.h"
#include "tools/session/HostSession.h"

/// A text case of tests/cases, as tests/support/Cases.py explains and reads them: a line with a cursor, what is set
/// besides, and the rows that are expected, two blanks between their columns.
struct LineCase {
  std::string place;
  std::u16string text;
  std::size_t cursor = 0;
  /// ": name Flow" is {"name", "Flow"}.
  std::map<std::string, std::string> settings;
  std::string status = "complete";
  std::vector<std::string> expected;

  frontend::Scope where() const;
  frontend::Options options() const;
};

std::vector<LineCase> lineCases(const std::string& file);

/// The world that the cases ask about, as a session.
struct CaseWorld {
  CaseWorld();
  std::unique_ptr<embedded::Host> host;
  embedded::Activation active;
  tools::HostSession session;
};

/// A session of a host in which Korval code ends the process while a request runs.
class TrappedSession final : public frontend::Session {
 public:
  explicit TrappedSession(embedded::Host& host) : host_(host), session_(host) {}

  void beginRequest(frontend::CodePolicy policy, frontend::Deadline deadline) override {
    session_.beginRequest(policy, deadline);
    trapCode(host_);
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
  embedded::Host& host_;
  tools::HostSession session_;
};
