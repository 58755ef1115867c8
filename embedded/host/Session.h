#pragma once

#include "embedded/host/Debugger.h"
#include "embedded/host/Dispatcher.h"
#include "embedded/host/FrameStack.h"
#include "embedded/host/Gate.h"
#include "embedded/host/ObjectSystem.h"
#include "embedded/host/Streams.h"
#include "embedded/language/Interpreter.h"
#include "embedded/model/ClassSystem.h"
#include "embedded/model/KnownNames.h"
#include "embedded/model/Workspace.h"

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
