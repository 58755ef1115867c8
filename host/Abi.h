#pragma once

#include "host/Export.h"

/// The version of this contract, as a symbol. The library refers to it, so a host that was built for another
/// contract fails when the two are linked or loaded, not later. A host defines it with an empty body; nobody
/// calls it. The number grows with every incompatible change of `host/`.
extern "C" KORVAL_HOST_API void contextdata_host_abi_1() noexcept;
