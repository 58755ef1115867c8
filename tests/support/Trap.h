#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "embedded/Host.h"

/// Whatever Korval code this host is asked to run from now on ends the process: for tests that prove that none runs.
inline void trapCode(embedded::Host& host) {
  host.setCodePolicy(embedded::CodePolicy::Refused);
  host.setRefusalObserver([](const std::string& what) {
    std::fprintf(stderr, "Korval code was about to run: %s\n", what.c_str());
    std::abort();
  });
}
