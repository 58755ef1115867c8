#pragma once

#include <map>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "frontend/Completion.h"
#include "frontend/Hover.h"
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

  /// What is expected, a line for each row.
  std::string rows() const;
  frontend::Scope where() const;
  frontend::Options options() const;
};

std::vector<LineCase> lineCases(const std::string& file);

/// Everything that a hover says, in lines.
std::string shownHover(const frontend::Hover& hover);

/// A host as a session; by default with the world that the cases ask about.
struct CaseWorld {
  explicit CaseWorld(std::unique_ptr<embedded::Host> made = nullptr);
  std::unique_ptr<embedded::Host> host;
  embedded::Activation active;
  tools::HostSession session;
};

/// A session of a host in which Korval code ends the process while a request runs.
struct TrappedSession {
  explicit TrappedSession(embedded::Host& host) : session(host, [&host] { trapCode(host); }) {}
  operator frontend::Session&() { return session; }
  tools::HostSession session;
};
