#include "embedded/host/Gate.h"

#include <algorithm>
#include <utility>

#include "embedded/model/Members.h"
#include "embedded/model/Unicode.h"
#include "embedded/model/World.h"
#include "host/Exceptions.h"

namespace embedded {

constinit Entrance withoutHost{0, NoHost};
// The model again: where this is compiled together with operations, it would be the definition's.
__attribute__((tls_model("initial-exec"))) constinit thread_local Entrance* activeGate = &withoutHost;

namespace {

constexpr const char* operationNames[] = {
#define OPERATION(identifier, name, rule, type) name,
#include "embedded/host/Operations.def"
#undef OPERATION
};

// What undoes runs to its end, or an interrupt would leave a sink on its stream.
bool heedsInterrupt(Operation operation) { return mayThrow(operation) && ruleOf(operation) != Rule::Undo; }

/// Control characters, which would break the lines of a log, as "\x.." escapes.
std::string quoted(const std::string& text) {
  constexpr char digits[] = "0123456789abcdef";
  std::string result = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') result += '\\';
    if (byte < 0x20 || byte == 0x7f)
      result += {'\\', 'x', digits[byte / 16], digits[byte % 16]};
    else
      result += character;
  }
  return result + '"';
}

std::string logged(const char* text) { return text == nullptr ? "null" : quoted(text); }
std::string logged(const std::string* text) { return quoted(*text); }
std::string logged(const std::u16string* text) { return quoted(narrowed(*text)); }
std::string logged(const kcos::COSInternedName* name) {
  return name->isNull() ? "null" : quoted(name->text());
}
std::string logged(const MemberText* name) { return logged(name->text()); }
std::string logged(bool value) { return value ? "true" : "false"; }
std::string logged(int value) { return std::to_string(value); }
std::string logged(unsigned long value) { return std::to_string(value); }

std::string logged(const kxArray_tag* value) {
  if (value == nullptr) return "null";
  // Read from the value itself: operations would be logged in turn.
  return "<" + valueOf(value).className() + " " + valueOf(value).sizeText() + ">";
}

std::string logged(const Kfh_KORVAL_fn* function) {
  return function == nullptr ? "null" : quoted(function->name);
}

std::string logged(Arguments arguments) {
  std::string all;
  for (const Argument& argument : arguments) all += (all.empty() ? "" : ", ") + argument.text();
  return all;
}

}  // namespace

const char* operationName(Operation operation) noexcept {
  return operationNames[static_cast<std::size_t>(operation)];
}

std::size_t operationCount() noexcept { return std::size(operationNames); }

std::string Argument::text() const {
  return std::visit([](auto value) { return logged(value); }, value_);
}

void Gate::startLog() {
  log_.clear();
  attention.fetch_or(Logging, std::memory_order_relaxed);
}

std::vector<LoggedCall> Gate::takeLog() {
  attention.fetch_and(~unsigned{Logging}, std::memory_order_relaxed);
  return std::exchange(log_, {});
}

void Gate::setFault(PlannedFault fault) {
  if (fault.answer != nullptr) answers_.push_back(fault.answer);
  fault_ = std::move(fault);
  attention.fetch_or(Fault, std::memory_order_relaxed);
}

bool Gate::clearFault() {
  attention.fetch_and(~unsigned{Fault}, std::memory_order_relaxed);
  return std::exchange(fault_, {}).happened;
}

const PlannedAnswer* Gate::attend(Operation operation, Arguments arguments) {
  ++calls;
  // Relaxed everywhere: the flags carry no other data with them, and one call later is soon enough.
  const unsigned reasons = attention.load(std::memory_order_relaxed);
  // Logged first, because a call that fails has been made. An interrupt leaves a planned fault for the next
  // call. What cannot fail is logged at most, and without a log allocates nothing: it may be giving memory back.
  if ((reasons & Logging) != 0) log_.push_back({operation, logged(arguments)});
  if ((reasons & Interrupt) != 0 && heedsInterrupt(operation)) throw Tamsix::System::InterruptException();
  if ((reasons & Fault) == 0 || !isDue(operation, arguments)) return nullptr;
  fault_.happened = true;
  if (fault_.answer != nullptr) return fault_.answer.get();
  raiseFault(operation);
  return nullptr;
}

/// Counts the calls that the plan is about.
bool Gate::isDue(Operation operation, Arguments arguments) {
  if (!mayThrow(operation) || (fault_.operation && fault_.operation != operation)) return false;
  const auto isMeant = [&](const Argument& argument) {
    const std::string text = argument.text();
    return text == fault_.argument || text == logged(&fault_.argument);
  };
  if (!fault_.argument.empty() && std::ranges::none_of(arguments, isMeant)) return false;
  return fault_.happened ? fault_.andLater : --fault_.callsToGo == 0;
}

void Gate::raiseFault(Operation operation) {
  const auto raise = fault_.raise;  // which may set or drop the plan
  try {
    raise();
  } catch (...) {
    noteCurrentException(operation);
    throw;
  }
}

void Gate::noteCurrentException(Operation operation) {
  try {
    throw;
  } catch (const Tamsix::System::InterruptException&) {
    noteFailure(operation, "interrupted", true);
  } catch (const foundation::core::except::Exception& exception) {
    noteFailure(operation, exception.message() + " [" + exception.messageId() + "]");
  } catch (const std::exception& exception) {
    noteFailure(operation, exception.what());
  } catch (...) {
    noteFailure(operation, "the class system failed");
  }
}

void Gate::noteFailure(Operation operation, const std::string& message, bool isInterrupt) {
  if (!failure_) failure_ = {operationName(operation), message, isInterrupt};
}

void refuseWithoutHost(Operation operation) {
  throw foundation::core::except::Exception(
      "KORVAL:host:NotActive",
      std::string("No host is active on this thread, so it cannot answer ") + operationName(operation) + ".");
}

}  // namespace embedded
