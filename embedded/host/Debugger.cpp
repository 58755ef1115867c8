#include "embedded/host/Debugger.h"

#include "embedded/host/Session.h"
#include "embedded/model/Unicode.h"

namespace embedded {

bool Debugger::hasDebuggerFocus() const {
  enter<Operation::hasDebuggerFocus>();
  return stoppedAt_.has_value();
}

std::u16string Debugger::getDebuggerFocus(std::int32_t& first, std::int32_t& second) const {
  enter<Operation::getDebuggerFocus>();
  const DebuggerDescription focus = stoppedAt_.value_or(DebuggerDescription());
  first = focus.first;
  second = focus.second;
  return widened(focus.focus);
}

}  // namespace embedded

IInterpreterBridge::~IInterpreterBridge() = default;

IInterpreterBridge* IInterpreter::GetInterpreterBridge() {
  embedded::enter<embedded::Operation::getInterpreterBridge>();
  embedded::Session& session = embedded::session();
  return session.debuggerIsReachable ? &session.debugger : nullptr;
}
