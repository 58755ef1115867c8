#include "frontend/RequestContext.h"

#include <exception>
#include <utility>

#include "frontend/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

/// Why the exception that is being handled was thrown; empty for an interrupt and for Stopped.
std::u16string failureOfCurrentException() {
  try {
    throw;
  } catch (const Stopped&) {
    return {};
  } catch (const Tamsix::System::InterruptException&) {
    return {};
  } catch (const foundation::core::except::Exception& exception) {
    return wide(exception.message() + " [" + exception.messageId() + "]");
  } catch (const std::exception& exception) {
    return wide(exception.what());
  } catch (...) {
    return u"the class system failed";
  }
}

/// How a request ends that could not begin, because of the exception that is being handled.
Outcome outcomeOfFailedBegin(CodePolicy policy) {
  const std::u16string failure = failureOfCurrentException();
  if (failure.empty()) return {Status::Interrupted, u"interrupted", policy, {}};
  return {Status::Failed, failure, policy, {}};
}

}  // namespace

RequestContext::RequestContext(Session& session, const Scope& scope, const Options& options)
    : session_(session), scope_(scope), options_(options), needed_(options.policy) {
  session_.beginRequest(options.policy, options.deadline);
}

RequestContext::RequestContext(const RequestContext& running, const Scope& scope, const Options& options,
                               Lenience lenience)
    : session_(running.session_),
      scope_(scope),
      options_(options),
      lenience_(lenience),
      // A variation of a request that runs: it neither begins nor ends one.
      isRunning_(false),
      needed_(options.policy) {}

RequestContext::~RequestContext() {
  if (isRunning_) session_.endRequest();
}

/// What is noted first is what people are told of; the widest policy is what they are offered.
bool RequestContext::mayUse(CodePolicy policy, const std::u16string& what) {
  if (policy <= options_.policy) return true;
  if (policy > needed_) needed_ = policy;
  if (withheld_.empty()) withheld_ = what;
  return false;
}

void RequestContext::check() const {
  if (session_.stopRequested()) throw Stopped();
}

const ClassInfo* RequestContext::caller() {
  // Once, also when there is none: it is asked for with every list of members.
  if (!std::exchange(hasLookedForCaller_, true) && !scope_.className.empty()) {
    auto record = std::make_unique<ClassInfo>(u"", scope_.className);
    if (!record->classId.isNull()) caller_ = std::move(record);
  }
  return caller_.get();
}

Outcome RequestContext::finish(const std::u16string& failure) {
  // First: the destructor must not end the request a second time.
  isRunning_ = false;
  return outcomeOf(session_.endRequest(), failure);
}

Outcome RequestContext::outcomeOf(const RequestRecord& record, const std::u16string& failure) const {
  Outcome outcome{Status::Complete, {}, needed_, record.printed};
  // The session's word comes first: it knows of interrupts and deadlines that the library has swallowed on the way.
  if (record.codeRefusals > 0) outcome.neededPolicy = CodePolicy::Allowed;
  if (record.interrupted) {
    outcome.status = Status::Interrupted;
    outcome.reason = u"interrupted";
  } else if (record.timedOut) {
    outcome.status = Status::TimedOut;
    outcome.reason = u"the deadline has passed";
  } else if (!failure.empty() || !record.failure.empty()) {
    outcome.status = Status::Failed;
    outcome.reason = failure.empty() ? record.failure : failure;
  } else if (!record.codeFailure.empty()) {
    outcome.status = Status::FailedCode;
    outcome.reason = record.codeFailure;
  } else if (outcome.neededPolicy > options_.policy) {
    outcome.status = Status::RefusedCode;
    const std::u16string what = record.refused.empty() ? withheld_ : wide(record.refused.front());
    outcome.reason = u"not looked at under the policy \"" + wide(nameOf(options_.policy)) + u"\": " + what;
  }
  return outcome;
}

/// Out of memory propagates from everywhere: an outcome could not be made of it either.
Outcome answer(Session& session, const Scope& scope, const Options& options,
               const std::function<void(RequestContext&)>& answering) {
  std::u16string failure;
  try {
    RequestContext request(session, scope, options);
    try {
      // A handler of its own, because the session's record is read of a request that still exists.
      answering(request);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (...) {
      failure = failureOfCurrentException();
    }
    return request.finish(failure);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return outcomeOfFailedBegin(options.policy);
  }
}

}  // namespace frontend
