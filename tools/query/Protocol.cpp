#include "tools/query/Protocol.h"

#include <nlohmann/json.hpp>
#include <set>
#include <utility>
#include <vector>

#include "host/Exceptions.h"
#include "tools/query/Operation.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools::query {

namespace {

constexpr int protocolNumber = 1;

/// Reads a line once before it is parsed, and refuses what would be no request, or take long to make one of: an object of
/// ordered keys looks each new one up among all before it. The parser itself keeps the last of repeated keys.
class Scan final : public Json::json_sax_t {
 public:
  bool null() override { return true; }
  bool boolean(bool) override { return true; }
  bool number_integer(number_integer_t) override { return true; }
  bool number_unsigned(number_unsigned_t) override { return true; }
  bool number_float(number_float_t, const string_t&) override { return true; }
  bool string(string_t&) override { return true; }
  bool binary(binary_t&) override { return true; }
  bool start_object(std::size_t) override { return enter(); }
  bool end_object() override { return leave(); }
  bool start_array(std::size_t) override { return true; }
  bool end_array() override { return true; }

  bool key(string_t& name) override {
    if (keys_.back().size() == mostKeys)
      throw RequestError{"query.too-many-keys", "an object has more than 100 keys"};
    if (!keys_.back().insert(name).second)
      throw RequestError{"query.repeated-key", "\"" + name + "\" is given twice", name};
    return true;
  }

  bool parse_error(std::size_t, const std::string&, const Json::exception& error) override {
    throw RequestError{"query.not-json", error.what()};
  }

 private:
  static constexpr std::size_t mostKeys = 100;

  bool enter() {
    keys_.emplace_back();
    return true;
  }
  bool leave() {
    keys_.pop_back();
    return true;
  }

  /// Of each object that has been begun.
  std::vector<std::set<std::string>> keys_;
};

/// The JSON object of a line. Throws RequestError: not JSON, not an object, a repeated key.
Json parseRequest(const std::string& line) {
  // Before parsing, whose own message would hold the broken text.
  if (!isUtf8(line)) throw RequestError{"query.not-utf8", "the line is no UTF-8 text"};
  Scan scan;
  Json::sax_parse(line, &scan);
  Json request = Json::parse(line);
  if (!request.is_object()) throw RequestError{"query.not-object", "a request is a JSON object"};
  return request;
}

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

std::string Protocol::opening() const {
  return lineOf({{"protocol", protocolNumber}, {"version", version()}});
}

std::string Protocol::answer(const std::string& line) {
  try {
    // Only its beginning has been kept, so it cannot be parsed.
    if (line.size() > longestLine) throw RequestError{"query.line-too-long", "more than 16 MiB"};
    return lineOf(answerRequest(parseRequest(line)));
  } catch (const RequestError& error) {
    // A line that is no request has been the first one all the same.
    first_ = false;
    return lineOf(errorAnswer(error));
  }
}

Json Protocol::answerRequest(const Json& request) {
  const bool first = std::exchange(first_, false);
  if (request.contains("tag") && !request["tag"].is_string() && !request["tag"].is_number_integer()) {
    throw RequestError{"query.wrong-type", "expected a string or an integer", "tag"};
  }
  if (patience_.count() > 0) alarm_.set(std::chrono::steady_clock::now() + patience_);
  Json answer = answerInTime(request, first);
  if (alarm_.stop()) {
    // Only the alarm knows that nobody has interrupted the request.
    host_.clearInterrupt();
    if (answer.contains("status")) answer["status"] = "timed-out";
  }
  return answer;
}

Json Protocol::answerInTime(const Json& request, bool first) {
  try {
    if (request.contains("protocol")) return headed(request, agree(request, first));
    return headed(request, ask(request));
  } catch (const RequestError& error) {
    // The request could be read, so that the error carries its tag.
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
  Json answer = Json::object();
  Question question(arguments, host_, trace, lastFailure_, answer);
  operation.answer(question);
  question.finish();
  return answer;
}

}  // namespace tools::query
