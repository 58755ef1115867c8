#include "tools/render/Json.h"

#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <boost/core/demangle.hpp>
#include <boost/locale/encoding_utf.hpp>
#include <cstdint>
#include <exception>
#include <limits>
#include <nlohmann/json.hpp>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "embedded/Host.h"
#include "host/Exceptions.h"
#include "tools/render/ClassDescription.h"
#include "tools/render/FrontEnd.h"
#include "tools/render/Text.h"

namespace tools {

using frontend::ClassDescription;
using frontend::ClassTree;
using frontend::MethodDescription;
using frontend::PropertyDescription;

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

Json wordOf(const frontend::Level& level) { return level ? Json(accessWord(*level)) : Json(); }

Json listOf(const std::vector<std::u16string>& texts) {
  Json list = Json::array();
  for (const std::u16string& text : texts) list.push_back(jsonOf(text));
  return list;
}

Json objectOf(const PropertyDescription& property) {
  Json json = jsonOf(property.info);
  json["readAccess"] = wordOf(property.readLevel);
  json["writeAccess"] = wordOf(property.writeLevel);
  json["isHidden"] = property.isHidden;
  return json;
}

Json objectOf(const MethodDescription& method) {
  Json json = jsonOf(method.info);
  json["access"] = wordOf(method.level);
  json["isHidden"] = method.isHidden;
  json["isConstructor"] = method.isConstructor;
  json["isOperatorOverload"] = method.isOperatorOverload;
  return json;
}

template <class Members>
Json objectsOf(const Members& members) {
  Json list = Json::array();
  for (const auto& member : members) list.push_back(objectOf(member));
  return list;
}

Json objectOf(const ClassDescription& described, const std::vector<ClassDescription>& classes) {
  Json superclasses = Json::array();
  for (const std::size_t at : described.superclasses) superclasses.push_back(jsonOf(classes[at].classId));
  return {{"name", jsonOf(described.name)},
          {"classId", jsonOf(described.classId)},
          {"isValid", described.isValid},
          {"isEnumeration", described.isEnumeration},
          {"superclasses", std::move(superclasses)},
          {"enumerationMembers", listOf(described.enumerationMembers)},
          {"properties", objectsOf(described.properties)},
          {"methods", objectsOf(described.methods)}};
}

void add(Json& json, const char* key, const std::u16string& text) {
  if (!text.empty()) json[key] = jsonOf(text);
}

/// With what every answer begins.
Json objectOf(const frontend::Outcome& outcome) {
  Json json = {{"status", nameOf(outcome.status)}};
  add(json, "reason", outcome.reason);
  json["neededPolicy"] = nameOf(outcome.neededPolicy);
  add(json, "printed", outcome.printed);
  return json;
}

Json objectOf(const frontend::Candidate& candidate) {
  Json json = {{"label", jsonOf(candidate.label)},
               {"insertion", jsonOf(candidate.insertion)},
               {"kind", nameOf(candidate.kind)},
               {"match", nameOf(candidate.match)},
               {"order", candidate.order}};
  add(json, "declaringClass", candidate.declaringClass);
  if (candidate.access) json["access"] = accessWord(*candidate.access);
  if (candidate.writeAccess && candidate.writeAccess != candidate.access)
    json["writeAccess"] = accessWord(*candidate.writeAccess);
  add(json, "type", candidate.type);
  add(json, "size", candidate.size);
  if (candidate.replacesDot) json["replacesDot"] = true;
  if (candidate.isStatic) json["static"] = true;
  if (candidate.isConstant) json["constant"] = true;
  if (candidate.isHidden) json["hidden"] = true;
  if (candidate.readRunsCode) json["readRunsCode"] = true;
  return json;
}

template <class Exception>
std::string typeOf(const Exception& exception) {
  return boost::core::demangle(typeid(exception).name());
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

std::optional<std::u16string> wideTextOf(const Json& json) {
  if (json.is_string()) return wide(json.get_ref<const std::string&>());
  return fromUnits<std::u16string, std::uint16_t>(json, "utf16");
}

std::optional<std::string> narrowTextOf(const Json& json) {
  if (json.is_string()) return json.get<std::string>();
  return fromUnits<std::string, std::uint8_t>(json, "bytes");
}

/// A message about broken text may hold a piece of it, which is replaced. JSON escapes most control characters, but not
/// those that a terminal obeys as well: they are as good with an escape.
std::string lineOf(const Json& json) {
  const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::string line;
  line.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const auto next = at + 1 < text.size() ? static_cast<unsigned char>(text[at + 1]) : 0U;
    // In UTF-8 these have two bytes.
    const bool isHigh = byte == 0xC2 && next < 0xA0;
    if (!isHigh && byte != 0x7F) {
      line += text[at];
      continue;
    }
    constexpr char digits[] = "0123456789abcdef";
    const unsigned unit = isHigh ? next : byte;
    line += {'\\', 'u', '0', '0', digits[unit / 16], digits[unit % 16]};
    at += isHigh ? 1 : 0;
  }
  return line;
}

// Answers of the front end: see FrontEnd.h and ClassDescription.h.

Json jsonOf(const KCOSContextData::PropertyInfo& property) {
  return {{"name", jsonOf(property.name)},
          {"type", jsonOf(property.type)},
          {"sizeStrings", listOf(property.sizeStrings)},
          {"validationFunctions", listOf(property.validationFunctions)},
          {"isDependent", property.isDependent},
          {"hasCustomGetter", property.hasCustomGetter},
          {"optimizedPropertyFlag", property.optimizedPropertyFlag},
          {"possibleValuesKind", property.possibleValuesKind},
          {"possibleValues", listOf(property.possibleValues)}};
}

Json jsonOf(const KCOSContextData::MethodInfo& method) {
  return {{"name", jsonOf(method.name)},
          {"definingClass", jsonOf(method.definingClass)},
          {"isStatic", method.isStatic}};
}

std::string jsonLineOf(const ClassTree& tree) {
  Json classes = Json::array();
  for (const ClassDescription& described : tree.classes) {
    classes.push_back(objectOf(described, tree.classes));
  }
  return lineOf({{"classes", std::move(classes)}});
}

std::string jsonLineOf(const frontend::Completion& completion) {
  Json json = objectOf(completion.outcome);
  json["begin"] = completion.begin;
  json["end"] = completion.end;
  json["total"] = completion.total;
  json["candidates"] = Json::array();
  for (const auto& candidate : completion.candidates) json["candidates"].push_back(objectOf(candidate));
  return lineOf(json);
}

Json jsonOf(const frontend::Explanation& explanation) {
  Json json = objectOf(explanation.outcome);
  json["name"] = jsonOf(explanation.name);
  json["isOffered"] = explanation.isOffered;
  json["reasons"] = Json::array();
  for (const frontend::Reason& reason : explanation.reasons) {
    json["reasons"].push_back({{"rule", nameOf(reason.rule)}, {"detail", jsonOf(reason.detail)}});
  }
  return json;
}

std::string jsonLineOf(const frontend::Explanation& explanation) { return lineOf(jsonOf(explanation)); }

// What went wrong.

Json jsonOfCurrentException() {
  try {
    throw;
  } catch (const KCOSContextData::ResolvedClassID::BadClassNameException& exception) {
    return {{"type", typeOf(exception)}, {"className", jsonOf(exception.className)}};
    // More derived types come before their bases.
  } catch (const foundation::core::except::Exception& exception) {
    return {{"type", typeOf(exception)},
            {"messageId", jsonOf(exception.messageId())},
            {"message", jsonOf(exception.message())}};
  } catch (const foundation::core::except::IException& exception) {
    return {{"type", typeOf(exception)}};
  } catch (const std::exception& exception) {
    return {{"type", typeOf(exception)}, {"what", jsonOf(std::string(exception.what()))}};
  } catch (...) {
    return {{"type", "unknown"}};
  }
}

/// Not its message alone: exceptions of hosts need not have one.
std::string lineOfCurrentException() { return lineOf(jsonOfCurrentException()); }

std::string errorLine(const std::string& code, const std::string& message,
                      const std::optional<FailedCode>& failed) {
  Json error = {{"code", code}, {"message", message}};
  if (failed) {
    error["source"] = jsonOf(failed->source);
    error["line"] = failed->line;
    error["column"] = failed->column;
    error["output"] = jsonOf(failed->output);
  }
  return lineOf({{"error", std::move(error)}});
}

std::string errorLineOfCurrentException(const std::string& code, const std::string& message) {
  return lineOf({{"error", {{"code", code}, {"message", message}, {"exception", jsonOfCurrentException()}}}});
}

std::string errorLine(const embedded::SnapshotError& error) {
  return lineOf({{"error",
                  {{"code", error.code()},
                   {"file", jsonOf(error.file())},
                   {"pointer", jsonOf(error.pointer())},
                   {"message", jsonOf(error.reason())}}}});
}

}  // namespace tools
