#pragma once

#include "embedded/language/Interpreter.h"
#include "embedded/language/SyntaxTree.h"

namespace embedded {

/// The method by which a class gives the operator a meaning of its own.
const char* methodOf(Symbol binary);

/// All operators between two values but && and ||.
ValuePtr calculated(Interpreter& interpreter, Symbol binary, const ValuePtr& left, const ValuePtr& right);

/// + - ~ before a value.
ValuePtr calculated(Interpreter& interpreter, Symbol prefix, const ValuePtr& operand);

/// first:step:last
ValuePtr rangeOf(Interpreter& interpreter, double first, double step, double last);

}  // namespace embedded
