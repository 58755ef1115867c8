#pragma once

#include "embedded/KnownNames.h"
#include "embedded/classes/ClassSystem.h"
#include "embedded/code/Interpreter.h"
#include "embedded/dispatcher/Debugger.h"
#include "embedded/dispatcher/Dispatcher.h"
#include "embedded/dispatcher/FrameStack.h"
#include "embedded/dispatcher/ObjectSystem.h"
#include "embedded/gate/Gate.h"
#include "embedded/streams/Streams.h"
#include "embedded/values/Workspace.h"

namespace embedded {

/// What is behind a host: the gate, and everything that its operations ask. Its parts refer to those before
/// them.
struct Session : Gate {
  /// Of a description that has been checked.
  explicit Session(const Description& description)
      : classes(description),
        workspace(description.workspace, classes),
        dispatcher(description, classes),
        objectSystem(description, classes),
        packages(description.packages),
        foreignClasses(description.foreignClasses),
        names(description),
        interpreter(description),
        debugger(description.scopes.debugger),
        debuggerIsReachable(description.scopes.bridge),
        componentsOn(description.components) {}

  ClassSystem classes;
  Workspace workspace;
  Dispatcher dispatcher;
  ObjectSystem objectSystem;
  std::vector<PackageDescription> packages;
  std::vector<ForeignClassDescription> foreignClasses;
  KnownNames names;
  Interpreter interpreter;
  Streams streams;
  FrameStack frames;
  Debugger debugger;
  bool debuggerIsReachable;
  bool componentsOn;
  bool interpreterIsAvailable = true;
};

/// The calling thread's session, behind a gate that has been entered.
inline Session& session() { return static_cast<Session&>(*activeGate); }

}  // namespace embedded
