#include "tools/render/FrontEnd.h"

#include <algorithm>
#include <boost/algorithm/string/join.hpp>
#include <nlohmann/json.hpp>
#include <vector>

#include "tools/render/Text.h"

namespace tools {

namespace {

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
  add(json, "type", candidate.type);
  add(json, "size", candidate.size);
  if (candidate.isStatic) json["static"] = true;
  if (candidate.isConstant) json["constant"] = true;
  if (candidate.isHidden) json["hidden"] = true;
  if (candidate.readRunsCode) json["readRunsCode"] = true;
  return json;
}

}  // namespace

std::string kindOf(const frontend::Candidate& candidate) {
  std::string kind = nameOf(candidate.kind);
  std::ranges::replace(kind, '-', ' ');
  return candidate.declaringClass.empty() ? kind : kind + " of " + printable(candidate.declaringClass);
}

std::string detailsOf(const frontend::Candidate& candidate) {
  std::vector<std::string> parts;
  const std::string type = printable(candidate.type);
  const std::string size = printable(candidate.size);
  if (!type.empty() || !size.empty())
    parts.push_back(size + (size.empty() || type.empty() ? "" : " ") + type);
  // Public goes without saying.
  if (candidate.access.value_or(0) != 0) parts.push_back(accessWord(*candidate.access));
  // Where the kind does not say so already.
  if (candidate.isConstant && candidate.kind != frontend::Kind::Constant) parts.push_back("constant");
  if (candidate.isHidden) parts.push_back("hidden");
  const bool isProperty = candidate.kind == frontend::Kind::Property;
  if (candidate.readRunsCode && isProperty) parts.push_back("reading runs code");
  return boost::algorithm::join(parts, ", ");
}

std::string noticeOf(const frontend::Outcome& outcome) {
  if (outcome.status == frontend::Status::Complete) return {};
  const std::string status = nameOf(outcome.status);
  const std::string reason = printable(outcome.reason);
  // Some reasons only repeat the status.
  return reason.empty() || reason == status ? status : status + ": " + reason;
}

std::string textOf(const frontend::Completion& completion) {
  std::vector<std::vector<std::string>> rows;
  for (const frontend::Candidate& candidate : completion.candidates) {
    rows.push_back({printable(candidate.label), kindOf(candidate), detailsOf(candidate)});
  }
  return tableOf(rows);
}

std::string textOf(const frontend::Explanation& explanation) {
  std::vector<std::vector<std::string>> rows;
  for (const frontend::Reason& reason : explanation.reasons) {
    rows.push_back({nameOf(reason.rule), printable(reason.detail)});
  }
  return printable(explanation.name) + (explanation.isOffered ? " is offered\n" : " is not offered\n") +
         tableOf(rows);
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

}  // namespace tools
