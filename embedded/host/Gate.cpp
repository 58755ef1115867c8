#include "embedded/host/Gate.h"

#include <boost/algorithm/string/join.hpp>
#include <utility>

#include "embedded/model/Unicode.h"
#include "embedded/model/World.h"
#include "host/Exceptions.h"

namespace embedded {

constinit thread_local Gate* activeGate = nullptr;

namespace {

constexpr const char* operationNames[] = {
#define OPERATION(identifier, name, rule) name,
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

}  // namespace

const char* operationName(Operation operation) noexcept {
  return operationNames[static_cast<std::size_t>(operation)];
}

std::size_t operationCount() noexcept { return std::size(operationNames); }

std::string logged(const std::string& text) { return quoted(text); }
std::string logged(const std::u16string& text) { return quoted(narrowed(text)); }
std::string logged(const char* text) { return text == nullptr ? "null" : quoted(text); }
std::string logged(const kcos::COSInternedName& name) { return name.isNull() ? "null" : quoted(name.text()); }
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

void Gate::startLog() {
  log_.clear();
  attention_.fetch_or(Logging, std::memory_order_relaxed);
}

std::vector<LoggedCall> Gate::takeLog() {
  attention_.fetch_and(~unsigned{Logging}, std::memory_order_relaxed);
  return std::exchange(log_, {});
}

void Gate::setFault(PlannedFault fault) {
  fault_ = std::move(fault);
  attention_.fetch_or(Fault, std::memory_order_relaxed);
}

bool Gate::clearFault() {
  attention_.fetch_and(~unsigned{Fault}, std::memory_order_relaxed);
  return std::exchange(fault_, {}).happened;
}

void Gate::attend(Operation operation, std::initializer_list<std::string> arguments) {
  // Relaxed everywhere: the flags carry no other data with them, and one call later is soon enough.
  const unsigned attention = attention_.load(std::memory_order_relaxed);
  // Logged first, because a call that fails has been made. An interrupt leaves a planned fault for the next
  // call.
  if ((attention & Logging) != 0) log(operation, arguments);
  if ((attention & Interrupt) != 0 && heedsInterrupt(operation)) throw Tamsix::System::InterruptException();
  if ((attention & Fault) != 0 && mayThrow(operation)) raiseFault(operation);
}

void Gate::log(Operation operation, std::initializer_list<std::string> arguments) {
  log_.push_back({operation, boost::algorithm::join(arguments, ", ")});
}

void Gate::raiseFault(Operation operation) {
  if (!fault_.anyOperation && fault_.operation != operation) return;
  if (fault_.happened && !fault_.andLater) return;
  if (!fault_.happened && --fault_.callsToGo > 0) return;
  fault_.happened = true;
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
