#pragma once

#include <string>
#include <vector>

#include "embedded/Host.h"

/// What a query must leave as it found it, whatever happens to it: error mode, streams, frames, current folder,
/// workspace, and the number of references that are held.
class State {
 public:
  /// Perhaps a fault of `hostOperation` is about to happen. One that restores something cannot restore it then; what
  /// that leaves is cleared away and not held against the query.
  explicit State(embedded::Host& host, const std::string& hostOperation = "");

  /// Reports to the running test what is not as before.
  void expectUnchanged() const;

 private:
  std::vector<std::string> shown() const;

  embedded::Host& host_;
  bool modeMayStay_;
  bool sinkMayStay_;
  bool mayPrint_;
  std::vector<std::string> before_;
};
