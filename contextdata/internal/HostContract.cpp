#include "host/Abi.h"

namespace {

// Refers to the version of the host contract, so that a host that was built for another one fails at link or
// load.
[[gnu::used]] void (*const hostContract)() noexcept = contextdata_host_abi_1;

}  // namespace
