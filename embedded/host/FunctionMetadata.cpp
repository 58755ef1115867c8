#include "host/FunctionMetadata.h"

#include <array>
#include <limits>
#include <stdexcept>

#include "embedded/host/Session.h"
#include "embedded/model/Names.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

const char16_t* wordFor(ArgumentDescription::Kind kind) {
  switch (kind) {
    case ArgumentDescription::Positional:
      return u"positional";
    case ArgumentDescription::Optional:
      return u"optional";
    case ArgumentDescription::Repeating:
      return u"repeating";
    case ArgumentDescription::NameValue:
      return u"name-value";
  }
  // A description made by a program may hold any number.
  throw std::out_of_range("There is no such kind of argument");
}

ValuePtr rowOf(const std::vector<std::optional<std::size_t>>& extents) {
  if (extents.empty()) return newEmpty();
  std::vector<double> row;
  for (const auto& extent : extents)
    // NaN stands for any extent.
    row.push_back(extent ? static_cast<double>(*extent) : std::numeric_limits<double>::quiet_NaN());
  const std::size_t count = row.size();
  return newValue({1, count}, std::move(row));
}

ValuePtr rowOf(const std::vector<std::string>& texts) {
  Cells cells;
  for (const std::string& text : texts) cells.elements.push_back(newText(widened(text)));
  return newValue({texts.empty() ? std::size_t{0} : std::size_t{1}, texts.size()}, std::move(cells));
}

/// Null when nothing is declared.
boost::intrusive_ptr<kxArray_tag> structureOf(const std::vector<ArgumentDescription>& arguments) {
  if (arguments.empty()) return {};
  Structures structures{{"name", "class", "size", "validators", "values", "kind"}, {}};
  for (const ArgumentDescription& argument : arguments) {
    for (ValuePtr& field : std::array<ValuePtr, 6>{
             newText(widened(argument.name)), newText(widened(argument.className)), rowOf(argument.size),
             rowOf(argument.validators), rowOf(argument.values), newText(wordFor(argument.kind))})
      structures.values.push_back(std::move(field));
  }
  return {newValue({1, arguments.size()}, std::move(structures)).detach(), false};
}

/// The function that the name means in code of `scope`: the scope itself, also without a name, an imported one, one of
/// its namespace, or that of the whole name. Null when there is none.
const Kfh_KORVAL_fn* functionNamed(const std::string& name, const Kfh_KORVAL_fn* scope) {
  const Functions& functions = session().functions;
  if (scope == nullptr) return functions.find(name);
  if (name.empty() || name == scope->name || name == simpleNameOf(scope->name)) return scope;
  return session().scopes.meaningIn(
      *scope, name, [&](const std::string& full) { return functions.findFor(scope->component, full); });
}

}  // namespace

}  // namespace embedded

FunctionMetadata omGetFunctionMetadata(const std::string& name, const Kfh_KORVAL_fn* function) {
  using namespace embedded;
  return asked<Operation::getFunctionMetadata>(name, function)
      .answer([&name, function]() -> FunctionMetadata {
        const Kfh_KORVAL_fn* found = functionNamed(name, function);
        if (found == nullptr || !found->arguments) return {};
        const ArgumentsDescription& arguments = *found->arguments;
        FunctionMetadata metadata{structureOf(arguments.inputs), structureOf(arguments.outputs),
                                  FunctionMetadata::DeclaresArguments};
        if (arguments.furtherInputs) metadata.flags |= FunctionMetadata::TakesFurtherInputs;
        if (arguments.furtherOutputs) metadata.flags |= FunctionMetadata::GivesFurtherOutputs;
        return metadata;
      });
}
