#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "embedded/language/Interpreter.h"

namespace embedded {

class Evaluator;

/// A call of a built-in function.
struct BuiltinCall {
  Evaluator& caller;
  Interpreter& interpreter;
  const Values& arguments;
  std::size_t nargout;

  /// An error unless there are that many arguments.
  void require(std::size_t least, std::size_t most) const;
  const Value& operator[](std::size_t index) const { return *arguments[index]; }
};

using Builtin = Values(const BuiltinCall&);

/// Null when there is none of that name.
Builtin* findBuiltin(std::string_view name);

/// All of them, dotted names among them, in the order of their kinds.
std::vector<std::string> builtinNames();

/// Does a built-in function's dotted name begin with this text?
bool isOuterNameOfBuiltin(std::string_view start);

/// What the table in Builtins.cpp names, by the files that define them.
namespace builtins {

// BuiltinsOnValues.cpp
Builtin trueValue, falseValue, missing, notANumber, infinity, pi, numel, length, isEmpty, size, zeros, ones,
    cell, structure, abs, floor, isMissing, sum, any, all, modulo;

// BuiltinsOnText.cpp
Builtin disp, fprintf, sprintf, error, strcmp, upper, lower, num2str, string, characters, doubles, logicals;

// BuiltinsOnObjects.cpp
Builtin properties, fieldNames, methods, className, isA, isField, isProperty, isMethod, isObject, feval,
    findPackage, allNamespaces;

}  // namespace builtins

}  // namespace embedded
