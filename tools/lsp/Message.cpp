#include "tools/lsp/Message.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "host/Text.h"
#include "tools/render/Text.h"

namespace tools::lsp {

namespace {

using fl::i18n::is_high_surrogate;
using fl::i18n::is_low_surrogate;

/// The value of the escape at the backslash ("\uD83D"), or 0.
char16_t escapedUnit(std::string_view text, std::size_t at) {
  if (text.substr(at, 2) != "\\u" || at + 6 > text.size()) return 0;
  const std::string_view digits = text.substr(at + 2, 4);
  std::uint16_t unit = 0;
  const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
  return end == digits.data() + digits.size() ? unit : 0;
}

/// Some editors hold half of a surrogate pair for a moment and send it as an escape, which JSON readers refuse. The
/// replacement character takes as much room, so that positions stay what they are.
std::string withoutLoneSurrogates(std::string text) {
  for (std::size_t at = text.find('\\'); at != std::string::npos; at = text.find('\\', at)) {
    const char16_t unit = escapedUnit(text, at);
    const bool isHigh = is_high_surrogate(unit);
    const bool isPair = isHigh && is_low_surrogate(escapedUnit(text, at + 6));
    if (!isPair && (isHigh || is_low_surrogate(unit))) text.replace(at, 6, "\\uFFFD");
    at += isPair ? 12 : (unit == 0 ? 2 : 6);
  }
  return text;
}

Json parse(const std::string& body) {
  Json json = Json::parse(body, nullptr, false);
  // Only after a failure: most messages need no second look.
  if (json.is_discarded()) json = Json::parse(withoutLoneSurrogates(body), nullptr, false);
  if (json.is_discarded()) throw Rejection{{}, {ErrorCode::ParseError, "the message is no JSON"}};
  return json;
}

[[noreturn]] void refuse(const std::string& pointer, const char* expected) {
  throw ResponseError{ErrorCode::InvalidParams, "\"" + pointer + "\" is " + expected};
}

std::uint64_t naturalAt(const Json& params, const std::string& pointer) {
  const Json& value = valueAt(params, pointer);
  if (!value.is_number_unsigned()) refuse(pointer, "a number from 0 on");
  return value.get<std::uint64_t>();
}

Json jsonOf(const ProtocolPosition& position) {
  return {{"line", position.line}, {"character", position.character}};
}

}  // namespace

std::optional<Message> readMessage(const std::string& body) {
  Json json = parse(body);
  SharedJson id;
  const auto refuse = [&](const char* reason) { throw Rejection{id, {ErrorCode::InvalidRequest, reason}}; };
  if (json.is_array()) refuse("the protocol has no batches");
  if (!json.is_object()) refuse("a message is an object");
  if (json.contains("id")) {
    const Json& given = json["id"];
    // The answer to a message that the client could not read has a null for its id.
    const bool isResponse = !json.contains("method") && given.is_null();
    if (!given.is_number_integer() && !given.is_string() && !isResponse)
      refuse("an id is an integer or a string");
    // From here on a refusal carries it, so that the client knows which request it is about.
    id = std::make_shared<const Json>(given);
  }
  if (!json.contains("jsonrpc") || json["jsonrpc"] != "2.0") refuse("\"jsonrpc\" is \"2.0\"");
  if (!json.contains("method")) {
    // An answer: this server asks nothing, so it is nobody's.
    if (json.contains("id") && (json.contains("result") || json.contains("error"))) return {};
    refuse("a message has a \"method\"");
  }
  if (!json["method"].is_string()) refuse("\"method\" is a string");
  Json params = json.contains("params") ? std::move(json["params"]) : Json();
  if (!params.is_structured() && !params.is_null()) refuse("\"params\" is an object or an array");
  return Message{id, json["method"], std::make_shared<const Json>(std::move(params))};
}

bool isId(const SharedJson& given, const Json& id) { return given != nullptr && *given == id; }

const Json& valueAt(const Json& params, const std::string& pointer) {
  static const Json null;
  const Json::json_pointer path(pointer);
  // A null for what is missing, because to clients the two mean the same.
  return params.contains(path) ? params.at(path) : null;
}

bool hasAt(const Json& params, const std::string& pointer) { return !valueAt(params, pointer).is_null(); }

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

ProtocolPosition positionAt(const Json& params, const std::string& pointer) {
  return {naturalAt(params, pointer + "/line"), naturalAt(params, pointer + "/character")};
}

Range rangeAt(const Json& params, const std::string& pointer) {
  return {positionAt(params, pointer + "/start"), positionAt(params, pointer + "/end")};
}

std::vector<const Json*> listAt(const Json& params, const std::string& pointer) {
  const Json& list = valueAt(params, pointer);
  if (!list.is_array()) refuse(pointer, "a list");
  std::vector<const Json*> elements;
  for (const Json& element : list) elements.push_back(&element);
  return elements;
}

bool flagAt(const Json& params, const std::string& pointer) {
  const Json& value = valueAt(params, pointer);
  return value.is_boolean() && value.get<bool>();
}

bool isTextAt(const Json& params, const std::string& pointer, const std::string& text) {
  return valueAt(params, pointer) == text;
}

bool listAtHas(const Json& params, const std::string& pointer, const std::string& text) {
  const Json& list = valueAt(params, pointer);
  return list.is_array() && std::find(list.begin(), list.end(), text) != list.end();
}

Json jsonOf(const Range& range) { return {{"start", jsonOf(range.start)}, {"end", jsonOf(range.end)}}; }

std::string textOf(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

std::string quotedText(const std::string& text) {
  const bool isPlain = std::ranges::all_of(
      text, [](char unit) { return unit >= ' ' && unit <= '~' && unit != '"' && unit != '\\'; });
  // Most are names, which need no writer of JSON.
  return isPlain ? '"' + text + '"' : textOf(text);
}

}  // namespace tools::lsp
