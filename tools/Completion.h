#pragma once

// What can follow "variable." or "Class.", by the library's name lists.

#include <string>
#include <vector>

#include "embedded/Host.h"

namespace tools {

struct Candidate {
  std::u16string name;
  /// "property", "method", "constant", "static method" or "enumeration member".
  std::string kind;
};

/// The candidates for a text like "pump.", "pump.Fl" or "lab.Pump.", kind by kind, each name once. A variable
/// wins over a class of the same name. `host` is active. Throws AnswerError, and what the library lets
/// out.
std::vector<Candidate> complete(const embedded::Host& host, const std::string& text);

}  // namespace tools
