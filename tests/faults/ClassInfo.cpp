#include <contextdata/KCOSContextData/ClassInfo.h>

#include <memory>

#include "host/Classes.h"
#include "tests/faults/FaultLoop.h"

namespace faults {

namespace {

using namespace KCOSContextData;

const std::string n = "KCOSContextData::";
constexpr auto any = MethodInfo::GetContext::Any;

std::string shownInFull(const std::vector<PropertyInfo>& properties) {
  std::string all;
  for (const PropertyInfo& property : properties)
    all += shown(property.name) + "(" + shownList(property.possibleValues) + ")" +
           (property.hasCustomGetter ? "g" : "") + (property.optimizedPropertyFlag ? " " : "u ");
  return all;
}

std::string shownStructure(const ClassInfo& record) {
  return shown(record.structure.name) + ": " + shownList(record.structure.getSuperclasses());
}

ResolvedClassID idOf(const std::string& name) { return ResolvedClassID::fromKnownResolvedClassID(name); }

/// A question to a record that is made before, so that only the question is logged.
Question ofRecord(const std::string& operation, const std::string& form, const std::string& className,
                  const std::function<std::string(const ClassInfo&)>& ask) {
  const auto record = std::make_shared<const ClassInfo>(idOf(className));
  return asks(n + operation, form, [=] { return ask(*record); });
}

Questions constructors() {
  return {asks(n + "ClassInfo::ClassInfo", "identifier",
               [id = idOf("info.Child")] { return shownStructure(ClassInfo(id)); }),
          asks(n + "ClassInfo::ClassInfo", "value",
               [] { return shownStructure(ClassInfo(variable("root").get())); })};
}

Questions propertyQueries() {
  return {ofRecord("ClassInfo::getProperties", "options", "info.Rich",
                   [](const ClassInfo& record) { return shownInFull(record.getProperties({})); }),
          ofRecord("ClassInfo::getProperties", "levels", "info.Child",
                   [](const ClassInfo& record) { return namesOf(record.getProperties({0}, nullptr)); }),
          ofRecord("ClassInfo::getPropertiesOfSuperclasses", "", "info.Base",
                   [](const ClassInfo& record) { return namesOf(record.getPropertiesOfSuperclasses({})); })};
}

Questions methodQueries() {
  return {ofRecord("ClassInfo::getMethods", "levels", "info.Child",
                   [](const ClassInfo& record) { return namesOf(record.getMethods({0}, any, nullptr)); }),
          ofRecord("ClassInfo::getMethodsOfSuperclasses", "", "info.Base", [](const ClassInfo& record) {
            return namesOf(record.getMethodsOfSuperclasses({.context = any}));
          })};
}

Questions structureQueries() {
  return {
      ofRecord("ClassInfo::getAttributes", "", "info.Child",
               [](const ClassInfo& record) { return shownList(record.getAttributes(true).attributeList1); }),
      ofRecord("ClassInfo::isA", "", "info.Child",
               [](const ClassInfo& record) { return shown(record.isA(u"info.Root")); }),
      ofRecord("ClassInfo::getDefaultAccessibility", "", "info.Child",
               [](const ClassInfo& record) { return std::to_string(record.getDefaultAccessibility()[0]); }),
      ofRecord("ClassStructureInfo::getSuperclasses", "", "info.Child", shownStructure)};
}

Questions namesAndSizes() {
  const auto inSet = [](const std::string& operation, bool (*ask)(kcos::COSInternedName)) {
    const auto id = kcos::internal::makeInterned("double");
    return asks(n + operation, "", [=] { return ask(id); });
  };
  const auto extents = [] {
    std::string all;
    for (const std::size_t extent : PropertyInfo::castSizeStringToIntegers({u" 12 ", u"n3"}))
      all += std::to_string(extent) + " ";
    return all;
  };
  return {asks(n + "PropertyInfo::castSizeStringToIntegers", "", extents),
          asks(n + "MethodInfo::isOperatorOverload", "",
               [] { return MethodInfo::isOperatorOverload(std::string("plus")); }),
          inSet("MethodInfo::isClassToCompleteMethodsForBeforeDot",
                MethodInfo::isClassToCompleteMethodsForBeforeDot),
          inSet("MethodInfo::isClassToCompleteMethodsForAfterDot",
                MethodInfo::isClassToCompleteMethodsForAfterDot)};
}

/// A visitor of its own, over the record of info.Root, for which info.Child asks.
template <class Visitor, class Options>
Questions visitors(const std::string& type, const Options& options, kcos::COSInterface* member,
                   auto collected, auto cosiTo) {
  const auto root = std::make_shared<const ClassInfo>(idOf("info.Root"));
  const auto child = std::make_shared<const ClassInfo>(idOf("info.Child"));
  const auto visitor = std::make_shared<Visitor>(root.get());
  Options withChild = options;
  withChild.accessingClass = child.get();
  auto* const record = cosiTo(member);
  const auto ask = [&](const std::string& operation, auto answer) {
    return asks(n + type + "::" + operation, "", answer);
  };
  return {ask(type, [root] { return Visitor(root.get()).owner == root.get(); }),
          ask("clear", [=](Answer&) { visitor->clear(withChild); }),
          ask("visit",
              [=] {
                visitor->clear(options);
                visitor->visit(member);
                return namesOf((*visitor).*collected);
              }),
          ask("hasAccessingClass", [visitor, withChild, record, root, child] {
            visitor->clear(withChild);
            return visitor->hasAccessingClass(record);
          })};
}

template <class Iterator>
kcos::COSInterface* firstOf(Iterator iterator) {
  return iterator.nextElement().get();
}

}  // namespace

Questions classInfoQuestions() {
  const kcos::COSClass& root = *kcos::COSClass::getClass(kcos::internal::makeInterned("info.Root"));
  const auto r = kcos::internal::makeInterned("r");
  const auto propertyVisitors = visitors<PropertyVisitorMutable>(
      "PropertyVisitorMutable", PropertyInfo::GetOptions{}, root.findProperty(r).get(),
      &PropertyVisitorMutable::properties, kcos::cosiToProp);
  const auto methodVisitors = visitors<MethodVisitorMutable>(
      "MethodVisitorMutable", MethodInfo::GetOptions{.context = any}, firstOf(root.findMethods(r)),
      &MethodVisitorMutable::methods, kcos::cosiToMethod);
  return joined({constructors(), propertyQueries(), methodQueries(), structureQueries(), namesAndSizes(),
                 propertyVisitors, methodVisitors});
}

}  // namespace faults
