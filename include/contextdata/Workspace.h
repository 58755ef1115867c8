#pragma once

// The workspace and the interpreter: the value of a typed expression, what a value says about itself, what
// the search path holds, and the frames that the interpreter sees. All in the global namespace.
//
//   if (boost::intrusive_ptr<kxArray_tag> value = GetValueFromCurrentWorkspace(u"settings.interval")) ...
//
// Here Korval code can run, where an operation says so. Everything runs on the interpreter thread. Values
// that are returned have a reference of their own; values that are given are borrowed.

#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/ExecutionFrames.h>
#include <contextdata/Workspace/LegacyPackages.h>
#include <contextdata/Workspace/SearchPath.h>
#include <contextdata/Workspace/Values.h>
#include <contextdata/Workspace/VariableMethods.h>
