#pragma once

// One request while it runs.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <functional>
#include <memory>
#include <string>

#include "frontend/Request.h"

namespace frontend {

/// Thrown to stop answering: the request has been asked to stop.
struct Stopped {};

/// What completion leaves out on purpose, and what it would be like without that. Only explanations ask so.
struct Lenience {
  bool constructors = false;
  bool operators = false;
  /// Methods of classes that complete none at the position.
  bool anyContext = false;
};

class RequestContext {
 public:
  /// Begins the request; what the session throws propagates.
  RequestContext(Session& session, const Scope& scope, const Options& options);
  /// A running request asked otherwise: begins none, and ends none. Borrows all it is given.
  RequestContext(const RequestContext& running, const Scope& scope, const Options& options,
                 Lenience lenience);
  ~RequestContext();
  RequestContext(const RequestContext&) = delete;
  RequestContext& operator=(const RequestContext&) = delete;

  /// Ends the request. `failure`: why it did not run to its end, or empty.
  Outcome finish(const std::u16string& failure);

  Session& session() const noexcept { return session_; }
  const Scope& scope() const noexcept { return scope_; }
  const Options& options() const noexcept { return options_; }
  const Lenience& lenience() const noexcept { return lenience_; }

  /// The policy goes at least so far. Otherwise it is noted that more was needed, to look at `what`.
  bool mayUse(CodePolicy policy, const std::u16string& what);
  /// Throws Stopped when the request has been asked to stop.
  void check() const;

  /// The class whose code asks, or null.
  const KCOSContextData::ClassInfo* caller();

 private:
  Outcome outcomeOf(const RequestRecord& record, const std::u16string& failure) const;

  Session& session_;
  const Scope& scope_;
  const Options& options_;
  const Lenience lenience_ = {};
  bool isRunning_ = true;
  CodePolicy needed_;
  std::u16string withheld_;
  bool hasLookedForCaller_ = false;
  std::unique_ptr<KCOSContextData::ClassInfo> caller_;
};

/// Runs a request, and says how it ended. Nothing but std::bad_alloc propagates.
Outcome answer(Session& session, const Scope& scope, const Options& options,
               const std::function<void(RequestContext&)>& answering);

}  // namespace frontend
