#include "embedded/language/Builtins.h"

#include <algorithm>
#include <array>

#include "embedded/language/BuiltinTables.h"
#include "embedded/language/Interpreter.h"

namespace embedded {

void BuiltinCall::require(std::size_t least, std::size_t most) const {
  if (arguments.size() >= least && arguments.size() <= most) return;
  failCode("KORVAL:code:ArgumentCount", "The function takes " + std::to_string(least) +
                                            (most > least ? " to " + std::to_string(most) : "") +
                                            " arguments, not " + std::to_string(arguments.size()));
}

Builtin* findBuiltin(std::string_view name) {
  for (const auto table : {builtinsOnValues(), builtinsOnText(), builtinsOnObjects()})
    for (const NamedBuiltin& builtin : table)
      if (builtin.name == name) return builtin.function;
  return nullptr;
}

bool isOuterNameOfBuiltin(std::string_view start) {
  return std::ranges::any_of(
      builtinsOnObjects(), [start](const NamedBuiltin& builtin) { return builtin.name.starts_with(start); });
}

}  // namespace embedded
