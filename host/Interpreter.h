#pragma once

// The interpreter: evaluation, calls, variables, and the debugger, reached by a bridge. The operations that run
// Korval code say so; the errors of that code propagate unless they say otherwise. Results have one reference
// for the caller; arguments are borrowed, and may be null where a client asks about a null value. Slots are
// null before a call and may stay null after a successful one. A slot that was filled before an exception
// left keeps its reference: the caller drops it.

#include <cstdint>
#include <string>

#include "host/Export.h"

class kxArray_tag;

namespace Tamsix::orvo {

/// Where an evaluated text comes from. The library's own evaluations are queries; the rest is the host's.
enum class EvalSource : std::int32_t { Query = 3 };

}  // namespace Tamsix::orvo

/// Is there an interpreter that could evaluate anything? Asked before each evaluation. Runs no Korval code.
KORVAL_HOST_API bool inValidInterpreterAvailable();

/// Evaluates a text in the current workspace and returns 0, or reports an error by another number. Runs
/// Korval code. `nlhs` results go into the slots of `plhs`; `valueOfStatement` asks for the value of an
/// expression statement.
KORVAL_HOST_API int inEvalExp(const std::u16string& expression, int nlhs, kxArray_tag** plhs,
                              bool valueOfStatement, Tamsix::orvo::EvalSource source);

/// The variable of the current workspace, or null. Runs no Korval code. `name` may be empty (null).
KORVAL_HOST_API kxArray_tag* inGetValueFromCurrentWorkspace(const std::string& name);

/// Calls a function. Runs Korval code.
KORVAL_HOST_API void inCallFcn(int nlhs, kxArray_tag** plhs, int nrhs, kxArray_tag** prhs,
                               const char* functionName);

/// Calls a function and, with `trap` set, returns an error of its code as a status other than 0. Runs Korval
/// code; may still throw.
KORVAL_HOST_API int inCallFcnWithTrap(int nlhs, kxArray_tag** plhs, int nrhs, kxArray_tag** prhs,
                                      const char* functionName, bool trap);

/// Calls the function whose name is the first of the arguments. Runs Korval code.
KORVAL_HOST_API void inFullFevalFcn(int nlhs, kxArray_tag** plhs, int nrhs, kxArray_tag** prhs);

/// Calls a method on a value; null when it returns nothing. Runs Korval code.
KORVAL_HOST_API kxArray_tag* inCallMethodSingleInputSingleOutput(const kxArray_tag* value,
                                                                 const std::string& method, int nlhs);

/// The way to the debugger. Owned by the interpreter.
class KORVAL_HOST_API IInterpreterBridge {
 public:
  virtual ~IInterpreterBridge();
  /// Is the debugger stopped somewhere?
  virtual bool hasDebuggerFocus() const = 0;
  /// The function or file on which it is stopped; fills both numbers. Asked only when there is a focus.
  virtual std::u16string getDebuggerFocus(std::int32_t& first, std::int32_t& second) const = 0;
};

class KORVAL_HOST_API IInterpreter {
 public:
  /// The bridge, or null when no debugger can be reached. May throw.
  static IInterpreterBridge* GetInterpreterBridge();
};
