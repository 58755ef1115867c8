#pragma once

/// Marks the operations and types that the shared library exports; everything else in it is local.
#define CONTEXTDATA_API __attribute__((visibility("default")))
