#include "embedded/Inspection.h"

#include <algorithm>
#include <stdexcept>
#include <typeinfo>
#include <utility>

#include "embedded/host/Session.h"

namespace embedded {

namespace {

std::optional<Operation> operationNamed(const std::string& name) {
  for (std::size_t at = 0; at < operationCount(); ++at)
    if (name == operationName(static_cast<Operation>(at))) return static_cast<Operation>(at);
  return {};
}

/// The type of an operation's answer, and its text; null when no other answer can be given.
std::pair<const std::type_info*, const char*> answerType(Operation operation) {
  switch (operation) {
#define OPERATION(identifier, name, rule, type) \
  case Operation::identifier:                   \
    return {isFixed<Operation::identifier> ? nullptr : &typeid(type), #type};
#include "embedded/host/Operations.def"
#undef OPERATION
  }
  throw std::logic_error("There is no such operation");
}

void checkAnswer(const PlannedFault& fault) {
  if (!fault.operation) throw std::invalid_argument("A plan with an answer needs an operation");
  const std::string name = operationName(*fault.operation);
  const auto [type, text] = answerType(*fault.operation);
  if (type == nullptr) throw std::invalid_argument("No plan can replace the answer of \"" + name + '"');
  if (fault.answer->type() != *type)
    throw std::invalid_argument("The answer planned for \"" + name + "\" must be of its type, " + text);
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
  PlannedFault fault{.operation = {},
                     .callsToGo = plan.call,
                     .andLater = plan.andLater,
                     .raise = std::move(plan.raise),
                     .argument = std::move(plan.argument),
                     .answer = std::move(plan.answer)};
  // A plan that can never happen would make its test pass for nothing.
  if (!plan.operation.empty()) {
    fault.operation = operationNamed(plan.operation);
    if (!fault.operation || !mayThrow(*fault.operation))
      throw std::invalid_argument("\"" + plan.operation + "\" is no operation of the host that may throw");
  }
  if (fault.callsToGo == 0 || static_cast<bool>(fault.raise) == (fault.answer != nullptr))
    throw std::invalid_argument(
        "A fault plan needs a call, counted from 1, and either something to raise or an answer");
  if (fault.answer != nullptr) checkAnswer(fault);
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
