#include "embedded/language/Routine.h"

#include "embedded/host/Gate.h"
#include "embedded/language/Parser.h"

namespace embedded {

const Unit& unitOf(const Routine& routine) {
  const auto poll = [] {
    if (activeGate != nullptr && activeGate->interruptRequested()) throw Tamsix::System::InterruptException();
  };
  std::shared_ptr<const Unit>& parsed = routine.parsed();
  if (parsed == nullptr)
    parsed = std::make_shared<Unit>(Parser(routine.text(), routine.context().name, poll).unit());
  return *parsed;
}

const FunctionSyntax* localFunctionOf(const Routine& routine, const std::string& name) {
  for (const FunctionSyntax& function : unitOf(routine).functions)
    if (function.name == name) return &function;
  return nullptr;
}

}  // namespace embedded
