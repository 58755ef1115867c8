#pragma once

#include <string>

#include "embedded/Host.h"

namespace embedded {

/// Whoever runs Korval code asks here first.
class CodeGuard {
 public:
  /// Counts the run of what is named, or raises "KORVAL:host:CodeRefused", or ends the process.
  void permit(const std::string& what);

  void setPolicy(CodePolicy policy) noexcept { policy_ = policy; }
  const CodeRecord& record() const noexcept { return record_; }
  void clearRecord() { record_ = {}; }

 private:
  CodePolicy policy_ = CodePolicy::Allowed;
  CodeRecord record_;
};

}  // namespace embedded
