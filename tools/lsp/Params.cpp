#include "tools/lsp/Params.h"

#include <algorithm>
#include <boost/locale/encoding_utf.hpp>
#include <limits>

namespace tools::lsp {

namespace {

using boost::locale::conv::utf_to_utf;

[[noreturn]] void refuse(const Path& path, const char* wanted) {
  throw ResponseError{ErrorCode::InvalidParams, "\"" + path.to_string() + "\" is " + wanted};
}

std::uint64_t naturalAt(const Json& params, const Path& path) {
  const Json& value = valueAt(params, path);
  if (!value.is_number_unsigned()) refuse(path, "a number from 0 on");
  return value.get<std::uint64_t>();
}

}  // namespace

const Json& valueAt(const Json& params, const Path& path) {
  static const Json null;
  return params.contains(path) ? params.at(path) : null;
}

std::string textAt(const Json& params, const Path& path) {
  const Json& value = valueAt(params, path);
  if (!value.is_string()) refuse(path, "a text");
  return value.get<std::string>();
}

std::u16string wideTextAt(const Json& params, const Path& path) {
  return utf_to_utf<char16_t>(textAt(params, path));
}

std::int64_t integerAt(const Json& params, const Path& path) {
  const Json& value = valueAt(params, path);
  if (!value.is_number_integer()) refuse(path, "an integer");
  return value.get<std::int64_t>();
}

Position positionAt(const Json& params, const Path& path) {
  return {naturalAt(params, path / "line"), naturalAt(params, path / "character")};
}

Range rangeAt(const Json& params, const Path& path) {
  return {positionAt(params, path / "start"), positionAt(params, path / "end")};
}

bool flagAt(const Json& params, const Path& path) {
  const Json& value = valueAt(params, path);
  return value.is_boolean() && value.get<bool>();
}

bool listAtHas(const Json& params, const Path& path, const std::string& text) {
  const Json& list = valueAt(params, path);
  return list.is_array() && std::find(list.begin(), list.end(), text) != list.end();
}

Json jsonOf(const Position& position) { return {{"line", position.line}, {"character", position.character}}; }

Json jsonOf(const Range& range) { return {{"start", jsonOf(range.start)}, {"end", jsonOf(range.end)}}; }

std::string utf8Of(std::u16string_view text) {
  return utf_to_utf<char>(text.data(), text.data() + text.size());
}

}  // namespace tools::lsp
