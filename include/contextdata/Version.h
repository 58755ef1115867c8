#pragma once

// The version of the library. The shared object carries the same one; the first number is that of its
// interface.
#define CONTEXTDATA_VERSION_MAJOR 1
#define CONTEXTDATA_VERSION_MINOR 0
#define CONTEXTDATA_VERSION_PATCH 0
