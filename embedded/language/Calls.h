#pragma once

#include <optional>
#include <string>

#include "embedded/language/Builtins.h"
#include "embedded/language/Evaluator.h"

namespace embedded {

/// What a name of code means that is no variable. At most one is set.
struct Meaning {
  const Routine* routine = nullptr;
  const FunctionSyntax* function = nullptr;  // a function of the routine; null: its main one
  const Class* oneClass = nullptr;
  Builtin* builtin = nullptr;
  const ForeignClassDescription* foreignClass = nullptr;
  bool isKnownWithoutCode = false;

  bool isCallable() const noexcept { return routine != nullptr || builtin != nullptr; }
};

/// What a dotted name means in code of the routine (null: code without imports).
Meaning meaningOf(Interpreter& interpreter, const std::string& name, const Routine* routine);

/// Do dotted names begin with this one: is it a namespace, a package folder, or the like?
bool isOuterName(Interpreter& interpreter, const std::string& name);

/// Calls what the name means. Methods of the arguments come before functions.
Values callNamed(Evaluator& caller, const std::string& name, Values arguments, std::size_t nargout);
Values call(Evaluator& caller, const std::string& name, const Meaning& meaning, Values arguments,
            std::size_t nargout);

/// The method of that name of the first argument that has one; nothing when none has.
std::optional<Values> callMethodOfArguments(Evaluator& caller, const std::string& name,
                                            const Values& arguments, std::size_t nargout);

/// Runs a text with these arguments: that function of it, or its main one (null). A file without any function
/// is a script, and works on the variables of its caller.
Values callRoutine(Interpreter& interpreter, const Routine& routine, const FunctionSyntax* function,
                   Values arguments, std::size_t nargout, Workspace* variablesOfCaller = nullptr);

}  // namespace embedded
