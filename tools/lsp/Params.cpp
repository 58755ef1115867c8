#include "tools/lsp/Params.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tools/render/Text.h"

namespace tools::lsp {

namespace {

[[noreturn]] void refuse(const std::string& pointer, const char* expected) {
  throw ResponseError{ErrorCode::InvalidParams, "\"" + pointer + "\" is " + expected};
}

std::uint64_t naturalAt(const Json& params, const std::string& pointer) {
  const Json& value = valueAt(params, pointer);
  if (!value.is_number_unsigned()) refuse(pointer, "a number from 0 on");
  return value.get<std::uint64_t>();
}

Json jsonOf(const Position& position) { return {{"line", position.line}, {"character", position.character}}; }

}  // namespace

const Json& valueAt(const Json& params, const std::string& pointer) {
  static const Json null;
  const Json::json_pointer path(pointer);
  // A null for what is missing, because to clients the two mean the same.
  return params.contains(path) ? params.at(path) : null;
}

std::string textAt(const Json& params, const std::string& pointer) {
  const Json& value = valueAt(params, pointer);
  if (!value.is_string()) refuse(pointer, "a text");
  return value.get<std::string>();
}

std::u16string wideTextAt(const Json& params, const std::string& pointer) {
  return wide(textAt(params, pointer));
}

std::int64_t integerAt(const Json& params, const std::string& pointer) {
  const Json& value = valueAt(params, pointer);
  if (!value.is_number_integer()) refuse(pointer, "an integer");
  return value.get<std::int64_t>();
}

Position positionAt(const Json& params, const std::string& pointer) {
  return {naturalAt(params, pointer + "/line"), naturalAt(params, pointer + "/character")};
}

Range rangeAt(const Json& params, const std::string& pointer) {
  return {positionAt(params, pointer + "/start"), positionAt(params, pointer + "/end")};
}

bool flagAt(const Json& params, const std::string& pointer) {
  const Json& value = valueAt(params, pointer);
  return value.is_boolean() && value.get<bool>();
}

bool listAtHas(const Json& params, const std::string& pointer, const std::string& text) {
  const Json& list = valueAt(params, pointer);
  return list.is_array() && std::find(list.begin(), list.end(), text) != list.end();
}

Json jsonOf(const Range& range) { return {{"start", jsonOf(range.start)}, {"end", jsonOf(range.end)}}; }

}  // namespace tools::lsp
