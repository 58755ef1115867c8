#include "tools/query/Protocol.h"

#include <utility>

#include "host/Exceptions.h"
#include "tools/commands/Version.h"
#include "tools/query/Operation.h"
#include "tools/query/Request.h"
#include "tools/query/RequestError.h"

namespace tools::query {

namespace {

constexpr int protocolNumber = 1;

Json errorAnswer(const RequestError& error) {
  Json rendered = {{"code", error.code}, {"message", error.message}};
  if (!error.argument.empty()) rendered["argument"] = error.argument;
  return {{"error", std::move(rendered)}};
}

const Operation& operationOf(const Arguments& arguments) {
  const std::string name = arguments.narrowText("op");
  const Operation* operation = findOperation(name);
  if (operation == nullptr) throw RequestError{"query.unknown-op", "no operation has this name", "op"};
  return *operation;
}

/// The request's tag and op, where they can be told, at the head of what is said about it.
Json headed(const Json& request, Json answer) {
  Json whole = Json::object();
  if (request.contains("tag")) whole["tag"] = request["tag"];
  if (request.contains("op") && request["op"].is_string()) whole["op"] = request["op"];
  whole.update(answer);
  return whole;
}

}  // namespace

Json Protocol::opening() const { return {{"protocol", protocolNumber}, {"version", version()}}; }

Json Protocol::answer(const std::string& line) {
  try {
    if (line.size() > longestLine) throw RequestError{"query.line-too-long", "more than 16 MiB"};
    return answerRequest(parseRequest(line));
  } catch (const RequestError& error) {
    first_ = false;
    return errorAnswer(error);
  }
}

Json Protocol::answerRequest(const Json& request) {
  const bool first = std::exchange(first_, false);
  if (request.contains("tag") && !request["tag"].is_string() && !request["tag"].is_number_integer()) {
    throw RequestError{"query.wrong-type", "expected a string or an integer", "tag"};
  }
  try {
    if (request.contains("protocol")) return headed(request, agree(request, first));
    return headed(request, ask(request));
  } catch (const RequestError& error) {
    return headed(request, errorAnswer(error));
  } catch (const Tamsix::System::InterruptException&) {
    return headed(request, {{"status", "interrupted"}});
  }
}

Json Protocol::agree(const Json& request, bool first) const {
  if (!first) throw RequestError{"query.protocol", "only the first line names the protocol", "protocol"};
  if (request["protocol"] != protocolNumber) {
    throw RequestError{"query.protocol", "the only protocol is 1", "protocol"};
  }
  const Arguments arguments(request, host_);
  arguments.allow("protocol");
  arguments.allow("tag");
  arguments.finish();
  return {{"protocol", protocolNumber}};
}

/// An interrupt can also hit what is asked before and after the library is: the making of an identifier that
/// is an argument, and the rendering of a class. Question hands on those that hit the library.
Json Protocol::ask(const Json& request) {
  const Arguments arguments(request, host_);
  arguments.allow("tag");
  const Operation& operation = operationOf(arguments);
  const bool trace = arguments.flag("trace") || trace_;
  Question question(arguments, host_, trace);
  operation.answer(question);
  return question.takeAnswer();
}

}  // namespace tools::query
