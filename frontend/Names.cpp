#include "frontend/Completion.h"

namespace frontend {

const char* nameOf(Kind kind) {
  static constexpr const char* names[] = {"value",
                                          "argument-name",
                                          "variable",
                                          "property",
                                          "field",
                                          "constant",
                                          "enumeration-member",
                                          "method",
                                          "static-method",
                                          "function",
                                          "code-file",
                                          "class-folder",
                                          "class",
                                          "namespace",
                                          "package",
                                          "built-in-function"};
  return names[static_cast<int>(kind)];
}

const char* nameOf(Match match) {
  static constexpr const char* names[] = {"exact", "prefix", "prefix-ignoring-case", "humps", "none"};
  return names[static_cast<int>(match)];
}

}  // namespace frontend
