#include "embedded/language/Builtins.h"

#include <algorithm>
#include <utility>

namespace embedded {

namespace {

constexpr std::pair<std::string_view, Builtin*> table[] = {
    {"true", builtins::trueValue},
    {"false", builtins::falseValue},
    {"missing", builtins::missing},
    {"NaN", builtins::notANumber},
    {"Inf", builtins::infinity},
    {"pi", builtins::pi},
    {"numel", builtins::numel},
    {"length", builtins::length},
    {"isempty", builtins::isEmpty},
    {"size", builtins::size},
    {"sizeAsDouble", builtins::size},
    {"zeros", builtins::zeros},
    {"ones", builtins::ones},
    {"cell", builtins::cell},
    {"struct", builtins::structure},
    {"abs", builtins::abs},
    {"floor", builtins::floor},
    {"ismissing", builtins::isMissing},
    {"sum", builtins::sum},
    {"any", builtins::any},
    {"all", builtins::all},
    {"mod", builtins::modulo},
    {"disp", builtins::disp},
    {"fprintf", builtins::fprintf},
    {"sprintf", builtins::sprintf},
    {"error", builtins::error},
    {"strcmp", builtins::strcmp},
    {"upper", builtins::upper},
    {"lower", builtins::lower},
    {"num2str", builtins::num2str},
    {"string", builtins::string},
    {"char", builtins::characters},
    {"double", builtins::doubles},
    {"logical", builtins::logicals},
    {"properties", builtins::properties},
    {"fieldnames", builtins::fieldNames},
    {"methods", builtins::methods},
    {"class", builtins::className},
    {"isa", builtins::isA},
    {"isfield", builtins::isField},
    {"isprop", builtins::isProperty},
    {"ismethod", builtins::isMethod},
    {"isobject", builtins::isObject},
    {"feval", builtins::feval},
    {"findpackage", builtins::findPackage},
    {"korval.metadata.Namespace.getAllNamespaces", builtins::allNamespaces},
};

}  // namespace

void BuiltinCall::require(std::size_t least, std::size_t most) const {
  if (arguments.size() >= least && arguments.size() <= most) return;
  interpreter.fail("KORVAL:code:ArgumentCount", "The function takes " + std::to_string(least) +
                                                    (most > least ? " to " + std::to_string(most) : "") +
                                                    " arguments, not " + std::to_string(arguments.size()));
}

Builtin* findBuiltin(std::string_view name) {
  // A list is enough: a name is looked up when nothing that is described has it.
  const auto* found = std::ranges::find(table, name, [](const auto& row) { return row.first; });
  return found == std::end(table) ? nullptr : found->second;
}

std::vector<std::string> builtinNames() {
  std::vector<std::string> names;
  for (const auto& row : table) names.emplace_back(row.first);
  return names;
}

bool isOuterNameOfBuiltin(std::string_view start) {
  return std::ranges::any_of(table, [start](const auto& row) { return row.first.starts_with(start); });
}

}  // namespace embedded
