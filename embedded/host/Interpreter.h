#pragma once

#include <optional>

#include "embedded/Description.h"
#include "host/Interpreter.h"

namespace embedded {

class Debugger final : public IInterpreterBridge {
 public:
  explicit Debugger(std::optional<DebuggerDescription> stoppedAt) : stoppedAt_(std::move(stoppedAt)) {}

  bool hasDebuggerFocus() const override;
  std::u16string getDebuggerFocus(std::int32_t& first, std::int32_t& second) const override;

 private:
  std::optional<DebuggerDescription> stoppedAt_;
};

}  // namespace embedded
