#pragma once

/// Marks what a host defines and the library (or a client of both) refers to: functions, thrown types, and
/// the polymorphic types whose typeinfo must be one object in the process.
#define KORVAL_HOST_API __attribute__((visibility("default")))
