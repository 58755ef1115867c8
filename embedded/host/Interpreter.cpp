#include "embedded/host/Interpreter.h"

#include <utility>

#include "embedded/host/Session.h"
#include "embedded/language/Convert.h"
#include "embedded/language/Members.h"
#include "embedded/language/Parser.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

enum Status : int { Success = 0, BadSyntax = 1, Failed = 2 };

int statusOf(const CodeError& error) {
  return error.messageId() == "KORVAL:code:Syntax" ? BadSyntax : Failed;
}

/// Of an evaluation: keeps the error, and prints it unless errors are to be silent.
void report(Session& session, const CodeError& error) {
  const CodeFailure& failure = session.interpreter.lastFailure.emplace(error.failure());
  // Again, for code that could not be read, which the parser tells without a session.
  session.codeFailed(failure);
  if (session.interpreter.errorMode == matrix::ErrorMode::Silent) return;
  session.streams.error.write(widened(failure.source + ":" + std::to_string(failure.line) + ":" +
                                      std::to_string(failure.column) + ": " + failure.message + " [" +
                                      failure.id + "]\n"));
}

/// Missing results are null.
void fill(Values results, int nlhs, kxArray_tag** plhs) {
  for (int at = 0; at < nlhs; ++at) {
    const auto index = static_cast<std::size_t>(at);
    plhs[at] = index < results.size() ? handedOut(std::move(results[index])) : nullptr;
  }
  // A fault that is planned here fails the call when its results are in their places, where the caller owns
  // them.
  enter<Operation::resultsStand>();
}

Values borrowed(int count, kxArray_tag** values) {
  Values result;
  for (int at = 0; at < count; ++at) {
    if (values[at] == nullptr)
      throw foundation::core::except::Exception("KORVAL:host:NoValue",
                                                "There is no value to call a function with.");
    // With a reference of its own: the arguments remain the caller's.
    result.emplace_back(static_cast<Value*>(values[at]));
  }
  return result;
}

std::size_t countOf(int nlhs) { return nlhs > 0 ? static_cast<std::size_t>(nlhs) : 0; }

Values callFunction(Interpreter& interpreter, const std::string& name, Values arguments, int nlhs) {
  const CodeRun run(interpreter, name);
  const CodeSource source(interpreter, name);
  // Called from no text: neither imports nor local functions give the name a meaning.
  Evaluator caller(interpreter, interpreter.world.workspace, nullptr);
  return callNamed(caller, name, std::move(arguments), countOf(nlhs));
}

/// Without `valueOfStatement` the text is one expression; with it, statements may stand before it.
const ExpressionStatement& statementWithValue(const Interpreter& interpreter, const Unit& unit,
                                              bool valueOfStatement) {
  const bool hasValue =
      !unit.script.empty() && std::holds_alternative<ExpressionStatement>(unit.script.back().form);
  if (!hasValue || (unit.script.size() > 1 && !valueOfStatement))
    interpreter.fail("KORVAL:code:NoValue", "A value is wanted, but the text is no expression");
  return std::get<ExpressionStatement>(unit.script.back().form);
}

Values evaluate(Interpreter& interpreter, const std::u16string& text, int nlhs, bool valueOfStatement) {
  const CodeSource source(interpreter, expressionSource);
  // Made for this evaluation, and parsed each time: texts of clients rarely come twice.
  const Routine routine({.name = expressionSource}, text);
  const Unit& unit = interpreter.unitOf(routine);
  if (!unit.functions.empty()) {
    interpreter.at = unit.functions.front().at;
    interpreter.fail("KORVAL:code:Syntax", "An evaluation runs statements, and defines no functions");
  }
  Evaluator evaluator(interpreter, interpreter.world.workspace, &routine);
  if (nlhs < 1) {
    evaluator.run(unit.script);
    return {};
  }
  const ExpressionStatement& last = statementWithValue(interpreter, unit, valueOfStatement);
  for (const Statement& statement : unit.script) {
    if (&statement == &unit.script.back()) break;
    // `return` at the level of the text: the expression is never reached.
    if (evaluator.runOne(statement) != Evaluator::Exit::AtEnd)
      interpreter.fail("KORVAL:code:NoValue", "The code returns before the expression whose value is wanted");
  }
  Values results = evaluator.valuesOf(last, countOf(nlhs));
  if (results.size() < countOf(nlhs))
    interpreter.fail("KORVAL:code:NoValue", "The expression gives too few values");
  return results;
}

}  // namespace

bool Debugger::hasDebuggerFocus() const {
  return asked<Operation::hasDebuggerFocus>().answer([this] { return stoppedAt_.has_value(); });
}

std::u16string Debugger::getDebuggerFocus(std::int32_t& first, std::int32_t& second) const {
  return asked<Operation::getDebuggerFocus>().answer([this, &first, &second] {
    const DebuggerDescription focus = stoppedAt_.value_or(DebuggerDescription());
    first = focus.first;
    second = focus.second;
    return widened(focus.focus);
  });
}

}  // namespace embedded

using namespace embedded;

bool inValidInterpreterAvailable() {
  return asked<Operation::validInterpreterAvailable>().answer(
      [] { return session().interpreterIsAvailable; });
}

int inEvalExp(const std::u16string& expression, int nlhs, kxArray_tag** plhs, bool valueOfStatement,
              Tamsix::orvo::EvalSource source) {
  return asked<Operation::evalExp>(expression, nlhs, valueOfStatement, static_cast<int>(source))
      .answer([&expression, nlhs, plhs, valueOfStatement]() -> int {
        Session& current = session();
        current.interpreter.lastFailure.reset();
        // After the reset: when code is refused, a failure from before must not be taken for its own.
        const CodeRun run(current.interpreter, "evaluation");
        try {
          // Only errors of the code become a status: a refusal, an interrupt and a planned fault propagate.
          fill(evaluate(current.interpreter, expression, nlhs, valueOfStatement), nlhs, plhs);
          return Success;
        } catch (const CodeError& error) {
          report(current, error);
          return statusOf(error);
        }
      });
}

void inCallFcn(int nlhs, kxArray_tag** plhs, int nrhs, kxArray_tag** prhs, const char* functionName) {
  return asked<Operation::callFcn>(functionName, nlhs, nrhs).answer([nlhs, plhs, nrhs, prhs, functionName] {
    // No handler here: errors of the code are for the caller, who has no status to look at.
    fill(callFunction(session().interpreter, functionName, borrowed(nrhs, prhs), nlhs), nlhs, plhs);
  });
}

int inCallFcnWithTrap(int nlhs, kxArray_tag** plhs, int nrhs, kxArray_tag** prhs, const char* functionName,
                      bool trap) {
  return asked<Operation::callFcnWithTrap>(functionName, nlhs, nrhs, trap)
      .answer([nlhs, plhs, nrhs, prhs, functionName, trap]() -> int {
        Session& current = session();
        current.interpreter.lastFailure.reset();
        try {
          fill(callFunction(current.interpreter, functionName, borrowed(nrhs, prhs), nlhs), nlhs, plhs);
          return Success;
        } catch (const CodeError& error) {
          if (!trap) throw;
          // Kept, but not printed: the caller has it as a status.
          current.interpreter.lastFailure = error.failure();
          return statusOf(error);
        }
      });
}

void inFullFevalFcn(int nlhs, kxArray_tag** plhs, int nrhs, kxArray_tag** prhs) {
  return asked<Operation::fullFevalFcn>(nlhs, nrhs).answer([nlhs, plhs, nrhs, prhs] {
    Values arguments = borrowed(nrhs, prhs);
    if (arguments.empty() || !isText(*arguments.front()))
      throw foundation::core::except::Exception("KORVAL:host:NoFunctionName",
                                                "The first argument is to be the name of a function.");
    const std::string name = narrowTextOf(session().interpreter, *arguments.front());
    arguments.erase(arguments.begin());
    fill(callFunction(session().interpreter, name, std::move(arguments), nlhs), nlhs, plhs);
  });
}

kxArray_tag* inCallMethodSingleInputSingleOutput(const kxArray_tag* value, const std::string& method,
                                                 int nlhs) {
  return asked<Operation::callMethod>(value, method, nlhs).answer([value, &method, nlhs] {
    const ValuePtr receiver(&valueOf(value));
    Values results = callFunction(session().interpreter, method, {receiver}, nlhs);
    return results.empty() ? nullptr : handedOut(std::move(results.front()));
  });
}

kxArray_tag* inGetValueFromCurrentWorkspace(const std::string& name) {
  return asked<Operation::getValueFromCurrentWorkspace>(name).answer(
      [&name] { return handedOut(session().workspace.find(name)); });
}

IInterpreterBridge::~IInterpreterBridge() = default;

IInterpreterBridge* IInterpreter::GetInterpreterBridge() {
  return asked<Operation::getInterpreterBridge>().answer([] {
    Session& current = session();
    return current.debuggerIsReachable ? &current.debugger : nullptr;
  });
}
