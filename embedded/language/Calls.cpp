#include "embedded/language/Calls.h"

#include <algorithm>

#include "embedded/language/Members.h"
#include "embedded/model/Names.h"

namespace embedded {

namespace {

/// The order decides: functions with code and classes of the description hide built-in functions, and these hide files.
Meaning withoutImports(Interpreter& interpreter, const std::string& name, const std::string& component) {
  const Kfh_KORVAL_fn* function = interpreter.world.functions.findFor(component, name);
  if (function != nullptr && function->routine != nullptr) return {.routine = function->routine.get()};
  if (const Class* found = interpreter.world.classes.findFor(component, name)) return {.oneClass = found};
  if (Builtin* found = findBuiltin(name)) return {.builtin = found};
  if (const auto* foreign = interpreter.world.foreignClass(name)) return {.foreignClass = foreign};
  if (const Routine* found = interpreter.files.function(name)) return {.routine = found};
  return {.isKnownWithoutCode = function != nullptr};
}

bool isSomething(const Meaning& meaning) {
  return meaning.isCallable() || meaning.oneClass || meaning.foreignClass || meaning.isKnownWithoutCode;
}

/// The function of that name among those of the routine's text, or null.
const FunctionSyntax* localFunction(Interpreter& interpreter, const Routine& routine,
                                    const std::string& name) {
  const std::vector<FunctionSyntax>& functions = interpreter.unitOf(routine).functions;
  interpreter.step(functions.size());
  for (const FunctionSyntax& function : functions)
    if (function.name == name) return &function;
  return nullptr;
}

/// The names that `name` may stand for in code of the routine, the closest first.
std::vector<std::string> candidates(Interpreter& interpreter, const std::string& name,
                                    const Routine& routine) {
  std::vector<std::string> result;
  const auto add = [&](const std::vector<std::string>& imports) {
    interpreter.step(imports.size());
    for (const std::string& import : imports)
      if (std::string full = importedName(import, name); !full.empty()) result.push_back(std::move(full));
  };
  add(routine.context().imports);
  add(interpreter.unitOf(routine).imports);
  if (!routine.context().inNamespace.empty()) result.push_back(routine.context().inNamespace + "." + name);
  return result;
}

std::optional<Values> callMethod(Evaluator& caller, const std::string& name, const Value& receiver,
                                 const Values& arguments, std::size_t nargout) {
  Interpreter& interpreter = caller.interpreter();
  if (const Opaque* opaque = receiver.opaque()) {
    const auto found = std::ranges::find(opaque->methods, name, &Opaque::Method::name);
    if (found == opaque->methods.end()) return {};
    if (found->answer == nullptr)
      interpreter.fail("KORVAL:code:Foreign", "The foreign method \"" + name + "\" fails");
    return Values{found->answer};
  }
  if (const Structures* structures = receiver.structureObject()) {
    // Objects of the older system have their methods in files only.
    const Routine* file = interpreter.files.method(structures->className, name);
    if (file == nullptr) return {};
    return callRoutine(interpreter, *file, nullptr, arguments, nargout);
  }
  const Class* oneClass = classOf(interpreter, receiver);
  const Method* method = oneClass == nullptr ? nullptr : oneClass->method(alreadyInterned(name));
  // A static method belongs to the class: having an object among the arguments does not select it.
  if (method == nullptr || method->content().isStatic) return {};
  if (!mayUse(interpreter, method->content().access, *method->definingClass(), caller.routine()))
    interpreter.fail("KORVAL:code:AccessDenied", "Calling \"" + name + "\" is not allowed here");
  if (method->content().routine == nullptr)
    interpreter.fail("KORVAL:code:NoCode",
                     "The method \"" + receiver.className() + "." + name + "\" has no code");
  return callRoutine(interpreter, *method->content().routine, nullptr, arguments, nargout);
}

/// The variables of a call.
Workspace bound(Interpreter& interpreter, const FunctionSyntax& function, const Routine& routine,
                Values arguments) {
  if (arguments.size() > function.inputs.size())
    interpreter.fail("KORVAL:code:ArgumentCount", "\"" + function.name + "\" takes at most " +
                                                      std::to_string(function.inputs.size()) + " arguments");
  Workspace variables;
  // Only the main function of a constructor's text is the constructor; the others in it are like any
  // function.
  const bool constructs = routine.context().receiver == Routine::Receiver::NewObject;
  if (constructs && &function == &interpreter.unitOf(routine).functions.front() && !function.outputs.empty())
    variables.set(function.outputs.front(), newObject(*routine.context().ownClass));
  for (std::size_t at = 0; at < arguments.size(); ++at)
    // An input that is written "~" has no name.
    if (!function.inputs[at].empty()) variables.set(function.inputs[at], std::move(arguments[at]));
  return variables;
}

Values runFunction(Interpreter& interpreter, const Routine& routine, const FunctionSyntax& function,
                   Values arguments, std::size_t nargout) {
  Workspace variables = bound(interpreter, function, routine, std::move(arguments));
  Evaluator(interpreter, variables, &routine).run(function.body);
  Values results;
  for (const std::string& output : function.outputs) {
    const ValuePtr value = variables.find(output);
    // One value also when none is asked for, for a statement shows it. An output without a value ends the
    // list: those after it would move up into its place.
    if (value == nullptr || results.size() == std::max<std::size_t>(nargout, 1)) break;
    results.push_back(value);
  }
  return results;
}

/// The last statement gives the values when it is an expression.
Values runBody(Evaluator& evaluator, const Unit& unit, std::size_t nargout) {
  for (const Statement& statement : unit.script) {
    const auto* last = std::get_if<ExpressionStatement>(&statement.form);
    if (&statement == &unit.script.back() && last != nullptr) return evaluator.valuesOf(*last, nargout);
    // Left before the last statement: there is no value.
    if (evaluator.runOne(statement) != Evaluator::Exit::AtEnd) break;
  }
  return {};
}

Values runBody(Interpreter& interpreter, const Routine& routine, Values arguments, std::size_t nargout) {
  using enum Routine::Receiver;
  const Routine::Context& context = routine.context();
  const std::size_t most = context.receiver == Object ? 1 : 0;
  if (arguments.size() > most)
    interpreter.fail("KORVAL:code:ArgumentCount", "\"" + context.name +
                                                      "\" takes no further arguments: it has no line " +
                                                      "that begins with \"function\"");
  Workspace variables;
  if (context.receiver == NewObject) variables.set("obj", newObject(*context.ownClass));
  if (!arguments.empty()) variables.set("obj", arguments.front());
  Evaluator evaluator(interpreter, variables, &routine);
  if (context.receiver != NewObject) return runBody(evaluator, interpreter.unitOf(routine), nargout);
  evaluator.run(interpreter.unitOf(routine).script);
  return {variables.find("obj")};
}

}  // namespace

bool isOuterName(Interpreter& interpreter, const std::string& name) {
  const std::string start = name + ".";
  return interpreter.world.classes.findNamespace(alreadyInterned(name)) != nullptr ||
         isOuterNameOfBuiltin(start) ||
         std::ranges::any_of(interpreter.world.foreignClasses,
                             [&](const auto& foreign) { return foreign.name.starts_with(start); }) ||
         interpreter.files.isPackage(name);
}

Meaning meaningOf(Interpreter& interpreter, const std::string& name, const Routine* routine) {
  if (routine == nullptr) return withoutImports(interpreter, name, "");
  if (const FunctionSyntax* local = localFunction(interpreter, *routine, name))
    return {.routine = routine, .function = local};
  for (const std::string& candidate : candidates(interpreter, name, *routine))
    // An import of something that does not exist hides nothing.
    if (Meaning meaning = withoutImports(interpreter, candidate, routine->context().component);
        isSomething(meaning))
      return meaning;
  return withoutImports(interpreter, name, routine->context().component);
}

std::optional<Values> callMethodOfArguments(Evaluator& caller, const std::string& name,
                                            const Values& arguments, std::size_t nargout) {
  for (const ValuePtr& argument : arguments) {
    // Methods of the older object system are looked for in folders.
    caller.interpreter().step();
    if (auto results = callMethod(caller, name, *argument, arguments, nargout)) return results;
  }
  return {};
}

Values call(Evaluator& caller, const std::string& name, const Meaning& meaning, Values arguments,
            std::size_t nargout) {
  Interpreter& interpreter = caller.interpreter();
  // First, because a class gives functions, also built-in ones, a meaning of its own.
  if (auto results = callMethodOfArguments(caller, name, arguments, nargout)) return std::move(*results);
  if (meaning.builtin != nullptr) return meaning.builtin({caller, interpreter, arguments, nargout});
  if (meaning.oneClass != nullptr) return construct(caller, *meaning.oneClass, std::move(arguments));
  if (meaning.routine != nullptr)
    return callRoutine(interpreter, *meaning.routine, meaning.function, std::move(arguments), nargout,
                       &caller.variables());
  if (meaning.isKnownWithoutCode)
    interpreter.fail("KORVAL:code:NoCode", "The function \"" + name + "\" has no code");
  interpreter.fail("KORVAL:code:UndefinedName",
                   "\"" + name + "\" is no variable, function, class or namespace");
}

Values callNamed(Evaluator& caller, const std::string& name, Values arguments, std::size_t nargout) {
  const Meaning meaning = meaningOf(caller.interpreter(), name, caller.routine());
  const std::string className(namespaceOf(name));
  const std::string method(simpleNameOf(name));
  // "Class.method" as one name comes from handles, and from clients; in code the accesses lead there.
  const Class* outer =
      className.empty() ? nullptr : meaningOf(caller.interpreter(), className, caller.routine()).oneClass;
  if (outer != nullptr && (!isSomething(meaning) || hasStaticMethod(*outer, method)))
    return callStatic(caller, *outer, method, std::move(arguments), nargout);
  return call(caller, name, meaning, std::move(arguments), nargout);
}

Values callRoutine(Interpreter& interpreter, const Routine& routine, const FunctionSyntax* function,
                   Values arguments, std::size_t nargout, Workspace* variablesOfCaller) {
  // A call is a level, and so recursion without end stops at the limit of levels.
  const CodeLevel level(interpreter);
  const CodeSource source(interpreter, routine.context().name);
  const Unit& unit = interpreter.unitOf(routine);
  if (function == nullptr && !unit.functions.empty()) function = &unit.functions.front();
  if (function != nullptr) return runFunction(interpreter, routine, *function, std::move(arguments), nargout);
  // Only a file is a script, and only with a caller there are variables for it to work on.
  if (!routine.context().isFile || variablesOfCaller == nullptr)
    return runBody(interpreter, routine, std::move(arguments), nargout);
  if (!arguments.empty()) interpreter.fail("KORVAL:code:ArgumentCount", "A script takes no arguments");
  Evaluator(interpreter, *variablesOfCaller, &routine).run(unit.script);
  return {};
}

}  // namespace embedded
