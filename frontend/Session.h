#pragma once

// What the front end asks of the session it works in, beside what the library says: which names there are,
// how far Korval code may go on behalf of a request, and what became of it. Whoever owns a session implements
// it; NoSession stands for none.
//
// Everything here is asked on the interpreter thread. Nothing here runs Korval code.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/Arrays.h"

namespace frontend {

/// How far a request may go to learn what something is.
enum class CodePolicy {
  Never,         ///< names, declarations and what variables hold; nothing is even tried that may run code
  StoredValues,  ///< values after dots too, as far as they are stored; the session refuses to run code
  Allowed        ///< code may run, silently
};

using Deadline = std::optional<std::chrono::steady_clock::time_point>;

/// What the session has noticed while a request was running.
struct RequestRecord {
  /// Somebody asked it to stop, and this was not its deadline.
  bool interrupted = false;
  bool timedOut = false;
  /// What an operation of the host raised that was no answer, for people; empty: nothing. Besides what the library lets
  /// propagate, this is what it has swallowed by its rules. No failures are errors of code, code that was refused, and what
  /// operations throw by their own rules where there is nothing to return.
  std::u16string failure;
  /// The first error of code that ran on the request's behalf, with its place; empty: none. Of what was typed itself it
  /// is none: that there is no such thing is an answer.
  std::u16string codeFailure;
  std::uint64_t codeRuns = 0;
  std::uint64_t codeRefusals = 0;
  /// What was refused, for people; perhaps not all of it.
  std::vector<std::string> refused;
  /// What code has printed meanwhile, the beginning of it when it is much.
  std::u16string printed;
};

/// A name of the session, dotted when it is in a namespace.
struct SessionName {
  std::u16string name;
  bool hidden = false;
};

class Session {
 public:
  virtual ~Session() = default;

  /// A request begins: code is governed by the policy, an interrupt requested earlier is forgotten, one is requested at
  /// the deadline, and what code prints goes to the record and nowhere else. Requests do not nest. May throw; then there
  /// is no request.
  virtual void beginRequest(CodePolicy policy, Deadline deadline) = 0;
  /// Whether the running request has been asked to stop, for whatever reason. Asked often.
  virtual bool stopRequested() const noexcept = 0;
  /// The request ends, and everything is as it was before it.
  virtual RequestRecord endRequest() noexcept = 0;

  /// The variables of the current workspace, in the order of their making.
  virtual std::vector<std::u16string> variableNames() = 0;
  /// The value of a variable; empty when there is none. May throw.
  virtual boost::intrusive_ptr<kxArray_tag> variable(const std::u16string& name) = 0;

  /// Functions and classes may also be files and folders of the search path, so that naming them may read these folders:
  /// none of the four is asked per candidate.
  virtual std::vector<SessionName> functionNames() = 0;
  virtual std::vector<SessionName> classNames() = 0;
  virtual std::vector<SessionName> namespaceNames() = 0;
  /// Packages of the older object system.
  virtual std::vector<SessionName> packageNames() = 0;
  /// Functions that the interpreter itself has, whether or not the session documents them.
  virtual std::vector<std::u16string> builtinNames() = 0;
};

/// No session: the front end offers what the library alone can.
class NoSession final : public Session {
 public:
  void beginRequest(CodePolicy, Deadline) override {}
  bool stopRequested() const noexcept override { return false; }
  RequestRecord endRequest() noexcept override { return {}; }
  std::vector<std::u16string> variableNames() override { return {}; }
  boost::intrusive_ptr<kxArray_tag> variable(const std::u16string&) override { return {}; }
  std::vector<SessionName> functionNames() override { return {}; }
  std::vector<SessionName> classNames() override { return {}; }
  std::vector<SessionName> namespaceNames() override { return {}; }
  std::vector<SessionName> packageNames() override { return {}; }
  std::vector<std::u16string> builtinNames() override { return {}; }
};

}  // namespace frontend
