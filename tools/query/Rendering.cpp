#include "tools/query/Rendering.h"

#include <utility>

#include "tools/render/Value.h"

namespace tools::query {

namespace {

template <class Texts>
Json listOf(const Texts& texts) {
  Json list = Json::array();
  for (const auto& text : texts) list.push_back(jsonOf(text));
  return list;
}

template <class Records>
Json listOfRecords(const Records& records) {
  Json list = Json::array();
  for (const auto& record : records) list.push_back(render(record));
  return list;
}

Json identityOf(const KCOSContextData::ClassInfo* record) {
  return record == nullptr ? Json() : jsonOf(record->classId.text());
}

}  // namespace

Json render(std::nullptr_t) { return nullptr; }

Json render(bool answer) { return answer; }

Json render(unsigned int number) { return number; }

Json render(const std::u16string& text) { return jsonOf(text); }

Json render(const std::vector<std::u16string>& texts) { return listOf(texts); }

Json render(const std::vector<std::string>& texts) { return listOf(texts); }

Json render(const std::set<std::u16string>& texts) { return listOf(texts); }

Json render(const std::unordered_set<std::u16string>& texts) {
  return render(std::set<std::u16string>(texts.begin(), texts.end()));
}

Json render(const std::vector<std::int32_t>& numbers) { return numbers; }

Json render(const std::vector<std::size_t>& numbers) { return numbers; }

Json render(const boost::intrusive_ptr<kxArray_tag>& value) { return jsonOfValue(value.get()); }

Json render(const std::vector<boost::intrusive_ptr<kxArray_tag>>& values) { return listOfRecords(values); }

Json render(const FunctionMetadata& metadata) {
  return {{"inputArguments", render(metadata.inputArguments)},
          {"outputArguments", render(metadata.outputArguments)},
          {"flags", metadata.flags}};
}

Json render(const KCOSContextData::PropertyInfo& property) {
  return {{"name", jsonOf(property.name)},
          {"type", jsonOf(property.type)},
          {"sizeStrings", render(property.sizeStrings)},
          {"validationFunctions", render(property.validationFunctions)},
          {"isDependent", property.isDependent},
          {"hasCustomGetter", property.hasCustomGetter},
          {"optimizedPropertyFlag", property.optimizedPropertyFlag},
          {"possibleValuesKind", property.possibleValuesKind},
          {"possibleValues", render(property.possibleValues)}};
}

Json render(const std::vector<KCOSContextData::PropertyInfo>& properties) {
  return listOfRecords(properties);
}

Json render(const KCOSContextData::MethodInfo& method) {
  return {{"name", jsonOf(method.name)},
          {"definingClass", jsonOf(method.definingClass)},
          {"isStatic", method.isStatic}};
}

Json render(const std::vector<KCOSContextData::MethodInfo>& methods) { return listOfRecords(methods); }

Json render(const KCOSContextData::AttributeSets& sets) {
  return {{"attributeList1", render(sets.attributeList1)},
          {"attributeList2", render(sets.attributeList2)},
          {"attributeList3", render(sets.attributeList3)},
          {"attributeList4", render(sets.attributeList4)}};
}

Json render(const KCOSContextData::PropertyVisitorMutable& visitor) {
  return {{"owner", identityOf(visitor.owner)},
          {"accessLevels", visitor.accessLevels},
          {"accessorKinds", visitor.accessorKinds},
          {"accessingClass", identityOf(visitor.accessingClass)},
          {"includeHidden", visitor.includeHidden},
          {"properties", render(visitor.properties)},
          {"hiddenProperties", render(visitor.hiddenProperties)}};
}

Json render(const KCOSContextData::MethodVisitorMutable& visitor) {
  return {{"owner", identityOf(visitor.owner)},
          {"access", visitor.access},
          {"accessingClass", identityOf(visitor.accessingClass)},
          {"context", static_cast<std::int32_t>(visitor.context)},
          {"includeConstructors", visitor.includeConstructors},
          {"includeOperatorOverloads", visitor.includeOperatorOverloads},
          {"includeHidden", visitor.includeHidden},
          {"methods", render(visitor.methods)},
          {"hiddenMethods", render(visitor.hiddenMethods)}};
}

Json render(const KCOSContextData::ClassInfo& record) {
  Json superclasses = Json::array();
  for (const auto& superclass : record.structure.superclasses) superclasses.push_back(render(*superclass));
  return {{"name", jsonOf(record.structure.name)},
          {"superclasses", std::move(superclasses)},
          {"classId", jsonOf(record.classId.text())}};
}

Json render(const KCOSContextData::ResolvedClassID& id) {
  const kcos::COSInternedName& name = id;
  return jsonOf(name.text());
}

Json render(const KCOSContextData::ResolvedClassID::DebuggerFocus& focus) {
  return {{"name", jsonOf(focus.name)}, {"first", focus.first}, {"second", focus.second}};
}

Json render(kcos::COSClass* found) { return found == nullptr ? Json() : jsonOf(found->getID().text()); }

Json render(kcos::COSInterface* found) {
  const kcos::COSNamespace* space = kcos::cosiToNamespace(found);
  return space == nullptr ? Json() : jsonOf(std::string(space->getDottedName()));
}

}  // namespace tools::query
