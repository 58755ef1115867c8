#pragma once

#include "embedded/host/Dispatcher.h"
#include "embedded/host/Frames.h"
#include "embedded/host/Gate.h"
#include "embedded/host/Interpreter.h"
#include "embedded/host/KnownNames.h"
#include "embedded/host/Scopes.h"
#include "embedded/host/Streams.h"
#include "embedded/language/Interpreter.h"
#include "embedded/model/World.h"

namespace embedded {

/// How errors name code that a client evaluates.
inline const std::string expressionSource = "expression";

/// What a host is made of: the gate, and everything that its operations ask. Its parts refer to those before
/// them.
struct Session final : Gate, World, CodeEnvironment {
  /// Of a description that has been checked.
  explicit Session(const Description& description)
      : World(description),
        interpreter(description, *this, *this),
        scopes(*this, interpreter.files),
        dispatcher(description, *this, scopes),
        objectSystem(description, classes),
        names(description),
        debugger(description.scopes.debugger),
        debuggerIsReachable(description.scopes.bridge),
        componentsOn(description.components) {}

  bool interruptRequested() const noexcept override { return Gate::interruptRequested(); }
  void enterCode(const std::string& what) override { enter<Operation::korvalCode>(what); }
  void print(std::u16string_view text) override { streams.out.write(text); }
  void codeFailed(const CodeFailure& failure) override {
    if (failure.source != expressionSource) interpreter.guard.noteFailure(failure);
  }

  Interpreter interpreter;
  Scopes scopes;
  Dispatcher dispatcher;
  ObjectSystem objectSystem;
  KnownNames names;
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
