#include "tools/render/Json.h"

#include <boost/locale/encoding_utf.hpp>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <type_traits>
#include <utility>

#include "tools/render/Text.h"

namespace tools {

namespace {

template <class Character>
Json unitsOf(const char* key, const std::basic_string<Character>& text) {
  Json units = Json::array();
  for (const Character unit : text) units.push_back(static_cast<std::make_unsigned_t<Character>>(unit));
  return {{key, std::move(units)}};
}

/// The text whose units an object holds under its one key.
template <class Text, class Unit>
std::optional<Text> fromUnits(const Json& json, const char* key) {
  if (!json.is_object() || json.size() != 1 || !json.contains(key) || !json.at(key).is_array()) return {};
  Text text;
  for (const Json& unit : json.at(key)) {
    if (!unit.is_number_unsigned() || unit.get<std::uint64_t>() > std::numeric_limits<Unit>::max()) return {};
    text.push_back(static_cast<typename Text::value_type>(unit.get<Unit>()));
  }
  return text;
}

}  // namespace

Json jsonOf(const std::u16string& text) {
  try {
    // It stops rather than replaces: a lone surrogate is told as its units, and nothing is lost.
    return boost::locale::conv::utf_to_utf<char>(text, boost::locale::conv::stop);
  } catch (const boost::locale::conv::conversion_error&) {
    return unitsOf("utf16", text);
  }
}

Json jsonOf(const std::string& text) { return isUtf8(text) ? Json(text) : unitsOf("bytes", text); }

std::optional<std::u16string> textOf(const Json& json) {
  if (json.is_string()) return wide(json.get_ref<const std::string&>());
  return fromUnits<std::u16string, std::uint16_t>(json, "utf16");
}

std::optional<std::string> narrowTextOf(const Json& json) {
  if (json.is_string()) return json.get<std::string>();
  return fromUnits<std::string, std::uint8_t>(json, "bytes");
}

/// A message about broken text may hold a piece of it, which is replaced.
std::string lineOf(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace tools
