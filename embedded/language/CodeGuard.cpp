#include "embedded/language/CodeGuard.h"

#include <cstdio>
#include <cstdlib>

#include "embedded/host/Gate.h"
#include "host/Exceptions.h"

namespace embedded {

namespace {

/// A record says what was refused, not how often.
constexpr std::size_t longestRecord = 100;

}  // namespace

void CodeGuard::permit(const std::string& what) {
  if (policy_ == CodePolicy::Trap) {
    std::fprintf(stderr, "Korval code was about to run: %s\n", what.c_str());
    std::abort();
  }
  if (policy_ == CodePolicy::Refused) {
    ++record_.refusals;
    if (record_.refused.size() < longestRecord) record_.refused.push_back(what);
    throw foundation::core::except::Exception("KORVAL:host:CodeRefused",
                                              "This session runs no Korval code: " + what + " was refused.");
  }
  ++record_.runs;
  enter<Operation::korvalCode>(what);
}

}  // namespace embedded
