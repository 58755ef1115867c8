#include <algorithm>
#include <unordered_set>

#include "embedded/language/Builtins.h"
#include "embedded/language/Convert.h"
#include "embedded/language/Members.h"
#include "embedded/model/Names.h"
#include "embedded/model/Unicode.h"

namespace embedded::builtins {

namespace {

[[noreturn]] void failWithout(const BuiltinCall& call, const std::string& what) {
  call.interpreter.fail("KORVAL:code:WrongType",
                        "A value of class \"" + call[0].className() + "\" has no " + what);
}

bool isListed(const Property& property) {
  return !property.content().hidden && property.content().get.level == kcos::PublicAccess;
}

bool isListed(const Method& method) {
  return method.content().visible && !method.content().hidden &&
         method.content().access.level == kcos::PublicAccess;
}

/// The names of members that everybody may list, each once, in the order of the class's walk. Of several members with
/// one name the first that may be listed counts.
template <auto members>
std::vector<std::string> memberNames(const Class& oneClass) {
  std::vector<std::string> names;
  std::unordered_set<std::string> seen;
  for (const Class* each : oneClass.lineage())
    for (const auto& member : each->parts().*members)
      if (!member->name().isNull() && isListed(*member) && seen.insert(member->name().text()).second)
        names.push_back(member->name().text());
  return names;
}

/// Each name is a value.
ValuePtr cellOf(const BuiltinCall& call, const std::vector<std::string>& names) {
  call.interpreter.step(names.size());
  return newCellOfTexts(names);
}

ValuePtr opaqueOf(const std::string& className, std::vector<std::pair<std::string, ValuePtr>> fields) {
  return newValue({1, 1}, Opaque{className, std::move(fields), {}});
}

/// One object with a "Name" for each of them.
ValuePtr opaquesNamed(const std::string& className, const std::vector<std::string>& names) {
  Objects objects{{}, className};
  for (const std::string& name : names)
    objects.elements.push_back(opaqueOf(className, {{"Name", newText(widened(name))}}));
  return newValue({names.size(), 1}, std::move(objects));
}

}  // namespace

Values properties(const BuiltinCall& call) {
  call.require(1, 1);
  const Class* oneClass = classOf(call.interpreter, call[0]);
  if (oneClass == nullptr) failWithout(call, "properties");
  return {cellOf(call, memberNames<&Class::Parts::properties>(*oneClass))};
}

Values fieldNames(const BuiltinCall& call) {
  call.require(1, 1);
  if (const auto* structures = call[0].as<Structures>()) return {cellOf(call, structures->fields)};
  // For objects the fields are the properties that everybody may read.
  if (!call[0].classId().isNull()) return properties(call);
  const Opaque* opaque = call[0].opaque();
  if (opaque == nullptr) failWithout(call, "fields");
  std::vector<std::string> names;
  for (const auto& field : opaque->fields) names.push_back(field.first);
  return {cellOf(call, names)};
}

Values methods(const BuiltinCall& call) {
  call.require(1, 1);
  if (const Class* oneClass = classOf(call.interpreter, call[0]))
    return {cellOf(call, memberNames<&Class::Parts::methods>(*oneClass))};
  CodeFiles& files = call.interpreter.files;
  if (const Structures* structures = call[0].structureObject())
    return {cellOf(call, files.methodNames(structures->className))};
  const Opaque* opaque = call[0].opaque();
  if (opaque == nullptr) failWithout(call, "methods");
  std::vector<std::string> names;
  for (const Opaque::Method& method : opaque->methods) names.push_back(method.name);
  return {cellOf(call, names)};
}

Values className(const BuiltinCall& call) {
  call.require(1, 1);
  return {newText(widened(call[0].className()))};
}

Values isA(const BuiltinCall& call) {
  call.require(2, 2);
  return {
      newLogical(call.interpreter.world.classes.isOfClass(call[0], narrowTextOf(call.interpreter, call[1])))};
}

Values isField(const BuiltinCall& call) {
  call.require(2, 2);
  const auto* structures = call[0].as<Structures>();
  return {
      newLogical(structures != nullptr && isText(call[1]) &&
                 structures->indexOf(narrowTextOf(call.interpreter, call[1])) < structures->fields.size())};
}

Values isProperty(const BuiltinCall& call) {
  call.require(2, 2);
  const Class* oneClass = classOf(call.interpreter, call[0]);
  return {newLogical(oneClass != nullptr && oneClass->property(alreadyInterned(
                                                narrowTextOf(call.interpreter, call[1]))) != nullptr)};
}

Values isMethod(const BuiltinCall& call) {
  call.require(2, 2);
  Interpreter& interpreter = call.interpreter;
  const Structures* structures = call[0].structureObject();
  const bool hasFile =
      structures != nullptr &&
      interpreter.files.method(structures->className, narrowTextOf(call.interpreter, call[1])) != nullptr;
  return {newLogical(hasFile || hasMethod(interpreter, call[0], narrowTextOf(call.interpreter, call[1])))};
}

Values isObject(const BuiltinCall& call) {
  call.require(1, 1);
  return {newLogical(!call[0].classId().isNull())};
}

Values feval(const BuiltinCall& call) {
  call.require(1, 1000);
  const auto* handle = call[0].as<FunctionHandle>();
  return callNamed(call.caller,
                   handle != nullptr ? handle->function : narrowTextOf(call.interpreter, call[0]),
                   {call.arguments.begin() + 1, call.arguments.end()}, call.nargout);
}

/// The package of the older object system, or an empty array.
Values findPackage(const BuiltinCall& call) {
  call.require(1, 1);
  const std::string name = narrowTextOf(call.interpreter, call[0]);
  for (const PackageDescription& package : call.interpreter.world.packages) {
    if (package.name != name) continue;
    call.interpreter.step(package.classes.size() + package.functions.size());
    return {opaqueOf("package", {{"Name", newText(widened(name))},
                                 {"Classes", opaquesNamed("package.class", package.classes)},
                                 {"Functions", opaquesNamed("package.function", package.functions)}})};
  }
  return {newEmpty()};
}

/// An array of objects with the dotted name of each namespace, in ascending order.
Values allNamespaces(const BuiltinCall& call) {
  call.require(0, 0);
  const kcos::COSInternedName className = interned(namespaceObjectClass);
  Objects objects{{}, className.text(), className};
  const std::vector<std::string> names = call.interpreter.world.classes.namespaceNames();
  call.interpreter.step(names.size());
  for (const std::string& name : names)
    objects.elements.push_back(
        // Of a class that no session has to describe: only its name is ever asked for.
        newValue({1, 1}, Object{className, className, {{"Name", newText(widened(name))}}, {}, {}}));
  return {newValue({names.size(), 1}, std::move(objects))};
}

}  // namespace embedded::builtins
