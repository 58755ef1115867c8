#include "embedded/language/Routine.h"

#include "embedded/language/Parser.h"

namespace embedded {

const Unit& Routine::unit() const {
  if (unit_ == nullptr) unit_ = std::make_unique<Unit>(Parser(text_, context_.name).unit());
  return *unit_;
}

const FunctionSyntax* Routine::localFunction(const std::string& name) const {
  for (const FunctionSyntax& function : unit().functions)
    if (function.name == name) return &function;
  return nullptr;
}

}  // namespace embedded
