#include "tools/query/Rendering.h"
#include "tools/render/Rendering.h"

namespace tools::description {

namespace {

Json jsonOf(const Level& level) { return level ? Json(levelWords().at(*level)) : Json(); }

Json jsonOf(const Property& property) {
  Json json = query::render(property.info);
  json["readAccess"] = jsonOf(property.readLevel);
  json["writeAccess"] = jsonOf(property.writeLevel);
  json["isHidden"] = property.isHidden;
  return json;
}

Json jsonOf(const Method& method) {
  Json json = query::render(method.info);
  json["access"] = jsonOf(method.level);
  json["isHidden"] = method.isHidden;
  json["isConstructor"] = method.isConstructor;
  json["isOperatorOverload"] = method.isOperatorOverload;
  return json;
}

template <class Members>
Json listOf(const Members& members) {
  Json list = Json::array();
  for (const auto& member : members) list.push_back(jsonOf(member));
  return list;
}

Json jsonOf(const ClassDescription& described, const std::vector<ClassDescription>& classes) {
  Json superclasses = Json::array();
  for (const std::size_t at : described.superclasses) {
    superclasses.push_back(tools::jsonOf(classes[at].classId));
  }
  return {{"name", tools::jsonOf(described.name)},
          {"classId", tools::jsonOf(described.classId)},
          {"isValid", described.isValid},
          {"isEnumeration", described.isEnumeration},
          {"superclasses", std::move(superclasses)},
          {"enumerationMembers", query::render(described.enumerationMembers)},
          {"properties", listOf(described.properties)},
          {"methods", listOf(described.methods)}};
}

}  // namespace

Json jsonOf(const Description& description) {
  Json classes = Json::array();
  for (const ClassDescription& described : description.classes) {
    classes.push_back(jsonOf(described, description.classes));
  }
  return {{"classes", std::move(classes)}};
}

}  // namespace tools::description
