#pragma once

// What a text of Korval code says about itself, without running it. None of this asks for a host.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Export.h"
#include "syntax/Position.h"

namespace embedded {

/// An error of Korval code. The column counts UTF-16 code units; both count from 1.
struct CodeFailure {
  std::string id;
  std::string message;
  /// The method, function or file, or "expression".
  std::string source;
  int line = 0;
  int column = 0;
};

/// A name that code gives a value, where it does so first.
struct CodeVariable {
  std::string name;
  syntax::Position at;
  /// What is named or called there: "lab.Pump" of `p = lab.Pump(3)`; empty for any other value.
  std::string maker = {};
};

/// One function of a text.
struct CodeFunction {
  std::string name;
  std::vector<std::string> inputs;
  std::vector<std::string> outputs;
  std::vector<CodeVariable> variables;
  syntax::Position begin;
  syntax::Position nameAt;
  /// After its last character.
  syntax::Position end;
};

struct CodeOutline {
  /// "lab.Pump" of one name, "lab.*" of every name of a namespace; in their order.
  std::vector<std::string> imports;
  std::vector<CodeFunction> functions;
  /// Those of a text without functions.
  std::vector<CodeVariable> variables;
};

/// Why the text is no code, or nothing.
KORVAL_HOST_API std::optional<CodeFailure> checkCode(std::u16string_view text);

/// The outline of a text, also of one that is being typed and is no code yet.
KORVAL_HOST_API CodeOutline outlineOf(std::u16string_view text);

}  // namespace embedded
