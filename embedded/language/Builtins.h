#pragma once

#include <string>
#include <string_view>

#include "embedded/language/Interpreter.h"

namespace embedded {

class Evaluator;

/// A call of a built-in function.
struct BuiltinCall {
  Evaluator& caller;
  const Values& arguments;
  std::size_t wanted;

  /// An error unless there are that many arguments.
  void require(std::size_t least, std::size_t most) const;
  const Value& operator[](std::size_t index) const { return *arguments[index]; }
};

using Builtin = Values(const BuiltinCall&);

/// Null when there is none of that name.
Builtin* findBuiltin(std::string_view name);

/// Does a built-in function's dotted name begin with this text?
bool isOuterNameOfBuiltin(std::string_view start);

struct NamedBuiltin {
  std::string_view name;
  Builtin* function;
};

}  // namespace embedded
