#include "embedded/Inspection.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "embedded/host/Session.h"

namespace embedded {

namespace {

std::optional<Operation> operationNamed(const std::string& name) {
  for (std::size_t at = 0; at < operationCount(); ++at)
    if (name == operationName(static_cast<Operation>(at))) return static_cast<Operation>(at);
  return {};
}

}  // namespace

Inspection::Inspection(std::unique_ptr<Session> session) : session_(std::move(session)) {}

Inspection::~Inspection() = default;

std::uint64_t Inspection::callCount() const noexcept { return session_->callCount(); }
void Inspection::startLog() { session_->startLog(); }

std::vector<Call> Inspection::takeLog() {
  std::vector<Call> calls;
  for (LoggedCall& call : session_->takeLog())
    calls.push_back({operationName(call.operation), std::move(call.arguments)});
  return calls;
}

bool Inspection::ranKorvalCode(const std::vector<Call>& log) {
  return std::ranges::any_of(
      log, [](const Call& call) { return call.operation == operationName(Operation::korvalCode); });
}

void Inspection::setFault(FaultPlan plan) {
  PlannedFault fault{plan.operation.empty(), {}, plan.call, plan.andLater, std::move(plan.raise), false};
  if (!fault.anyOperation) {
    const auto operation = operationNamed(plan.operation);
    // A plan that can never happen would make its test pass for nothing.
    if (!operation || !mayThrow(*operation))
      throw std::invalid_argument("\"" + plan.operation + "\" is no operation of the host that may throw");
    fault.operation = *operation;
  }
  if (fault.callsToGo == 0 || !fault.raise)
    throw std::invalid_argument("A fault plan needs a call, counted from 1, and something to raise");
  session_->setFault(std::move(fault));
}

bool Inspection::clearFault() { return session_->clearFault(); }

std::vector<std::string> Inspection::faultyOperations() {
  std::vector<std::string> names;
  for (std::size_t at = 0; at < operationCount(); ++at)
    if (const auto operation = static_cast<Operation>(at); mayThrow(operation))
      names.emplace_back(operationName(operation));
  return names;
}

void Inspection::setRefusalObserver(std::function<void(const std::string& what)> observer) {
  session_->interpreter.guard.setRefusalObserver(std::move(observer));
}

ReferenceAudit Inspection::references() noexcept {
  const ValueCounts counts = Value::counts();
  return {counts.values, counts.added, counts.dropped};
}

}  // namespace embedded
