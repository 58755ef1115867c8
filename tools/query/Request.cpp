#include "tools/query/Request.h"

#include <set>
#include <vector>

#include "tools/query/RequestError.h"

namespace tools::query {

namespace {

/// Follows the parser and finds the key that an object has twice; the parser itself keeps the last value.
class RepeatedKeys {
 public:
  bool operator()(int, Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::object_start) keys_.emplace_back();
    if (event == Json::parse_event_t::object_end) keys_.pop_back();
    if (event == Json::parse_event_t::key) insert(parsed.get_ref<const std::string&>());
    return true;
  }

 private:
  void insert(const std::string& key) {
    if (!keys_.back().insert(key).second) {
      throw RequestError{"query.repeated-key", "\"" + key + "\" is given twice", key};
    }
  }

  std::vector<std::set<std::string>> keys_;
};

}  // namespace

Json parseRequest(const std::string& line) {
  if (!isUtf8(line)) throw RequestError{"query.not-utf8", "the line is no UTF-8 text"};
  Json request;
  try {
    request = Json::parse(line, RepeatedKeys());
  } catch (const Json::exception& error) {
    throw RequestError{"query.not-json", error.what()};
  }
  if (!request.is_object()) throw RequestError{"query.not-object", "a request is a JSON object"};
  return request;
}

}  // namespace tools::query
