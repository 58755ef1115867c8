#pragma once

#include "embedded/host/Dispatcher.h"
#include "embedded/host/Frames.h"
#include "embedded/host/Gate.h"
#include "embedded/host/Interpreter.h"
#include "embedded/host/KnownNames.h"
#include "embedded/host/Streams.h"
#include "embedded/language/Interpreter.h"
#include "embedded/model/World.h"

namespace embedded {

/// How errors name code that a client evaluates.
inline const std::string expressionSource = "expression";

/// What stands behind a host: the gate, and everything that its operations ask. Its parts refer to those before
/// them.
struct Session : Gate, World {
  /// Of a description that has been checked.
  explicit Session(const Description& description)
      : World(description),
        dispatcher(description, *this),
        objectSystem(description, classes),
        names(description),
        interpreter(description),
        debugger(description.scopes.debugger),
        debuggerIsReachable(description.scopes.bridge),
        componentsOn(description.components) {}

  Dispatcher dispatcher;
  ObjectSystem objectSystem;
  KnownNames names;
  Interpreter interpreter;
  Streams streams;
  FrameStack frames;
  Debugger debugger;
  bool debuggerIsReachable;
  bool componentsOn;
  bool interpreterIsAvailable = true;
};

/// The calling thread's session, after a gate that has been entered.
inline Session& session() { return static_cast<Session&>(*activeGate); }

}  // namespace embedded
