#pragma once

// Evaluation that leaves no trace, and the value of a typed expression.

#include <contextdata/Export.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <string>

#include "host/Arrays.h"

/// Evaluates an expression in the current workspace; returns whether the interpreter reports success. Runs
/// Korval code. What the code prints, to the output or to the error stream, is thrown away, and its errors
/// neither stop in the debugger nor are reported. `nlhs` results, each with one reference for the caller, go
/// into the slots of `plhs` (not read for 0); `flag` asks for the value of an expression statement. Without
/// an interpreter: false, and nothing is touched.
///
/// What the evaluation throws propagates, the interrupt like any other, after the error mode and the streams
/// are as before. A failure while restoring the error mode is ignored.
CONTEXTDATA_API bool EvalcExpSuccessful(const std::u16string& expression, int nlhs, kxArray_tag** plhs,
                                        bool flag);

/// The value of an expression in the current workspace; empty when it has none.
///
/// A variable with dotted fields after it ("a", "a.b.c") is walked: through fields of scalar structures and
/// properties of scalar objects. The walk returns nothing for an unknown variable, for a field of an array of
/// several elements, for a field of a value that has none (a number, a text, a cell), for a method (also when
/// there is a property of its name), and for an expression that names a member of a foreign class. Whatever
/// else stands after the name ("a(3).x", "a + 1", a field that the walk does not find) is left to a silent
/// evaluation of the expression as typed.
///
/// May run Korval code: get methods of properties, what opaque objects answer, and the evaluation. A property
/// that cannot be read, for whatever reason, is left to the evaluation; a call that fails on an opaque object
/// counts as no names; what the evaluation throws, the interrupt too, means that there is no value. What the
/// tests of the walk throw, and reading what opaque objects return, propagates. Names are converted with
/// the ASCII conversion.
CONTEXTDATA_API boost::intrusive_ptr<kxArray_tag> GetValueFromCurrentWorkspace(
    const std::u16string& expression);
