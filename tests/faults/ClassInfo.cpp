#include <contextdata/KCOSContextData/ClassInfo.h>

#include <memory>
#include <sstream>
#include <tuple>

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
                  const Rules& rules, const std::function<std::string(const ClassInfo&)>& ask) {
  const auto record = std::make_shared<const ClassInfo>(idOf(className));
  return asks(n + operation, form, rules, [=] { return ask(*record); });
}

/// A query asks info.Child, then info.Base, then info.Root: what fails at one level leaves what the levels before have.
/// The table names host operations, each with how often every level asks it.
Rules byLevel(const std::string& table, Rules rules = {}) {
  std::istringstream text(table);
  for (std::string hostOperation; text >> hostOperation;) {
    std::size_t call = 0, times = 0;
    for (const char* left : {"", "c", "b c"})
      for (text >> times; times > 0; --times)
        rules.push_back({hostOperation, swallowedButInterrupt(left), ++call});
  }
  return rules;
}

// A failure clears the list of the record whose list is being read, and of no other; what a nested record throws
// outside of its own list is a failure of the list around it. The table has for each call what is left then.
Questions constructors() {
  Rules nested{{"kcos::nameresolution::getUserVisibleClassName", propagates, 1},
               {"fl::i18n::to_ustring", propagates, 1}};
  const std::string left[] = {"info.Child", "info.Child info.Base", "info.Child info.Base info.Root"};
  for (const auto& [hostOperation, first, calls] :
       std::vector<std::tuple<std::string, std::size_t, std::string>>{
           {"kcos::nameresolution::getUserVisibleClassName", 2, "01"},
           {"fl::i18n::to_ustring", 2, "01"},
           {"kcos::COSClass::getClass", 1, "00112"},
           {"kcos::COSClass::getID", 1, "01"},
           {"kcos::COSClass::getSuperclasses", 1, "012"},
           {"kcos::COSEnumerator::hasMoreElements", 1, "0110"},
           {"kcos::COSEnumerator::nextElement", 1, "01"}})
    for (std::size_t call = 0; call < calls.size(); ++call)
      nested.push_back(
          {hostOperation, swallowedButInterrupt("info.Child: " + left[calls[call] - '0']), first + call});
  const Reaction alone = swallowedButInterrupt("info.Root: info.Root");
  return {asks(n + "ClassInfo::ClassInfo", "identifier", nested,
               [id = idOf("info.Child")] { return shownStructure(ClassInfo(id)); }),
          asks(n + "ClassInfo::ClassInfo", "value",
               {{"kcos::internal::makeInterned", swallowed(": "), 1},
                {"kcos::COSClass::getClass", swallowed(": "), 1},
                {"kcos::COSClass::getClass", alone, 2},
                {"kcos::COSClass::getSuperclasses", alone},
                {"*", propagates}},
               [] { return shownStructure(ClassInfo(variable("root").get())); })};
}

Rules rulesOfFlags() {
  const std::string finite = "finite(1 u Running)", end = " typed() ";
  const auto one = swallowedButInterrupt(finite + "g fast()u" + end);
  const auto two = swallowedButInterrupt(finite + " fast()gu" + end);
  const auto three = swallowedButInterrupt(finite + " fast()u typed()g ");
  const std::string makeInterned = "kcos::internal::makeInterned", find = "kcos::COSInterface::findAttribute";
  return {{"*", swallowedButInterrupt("")},
          {"omGetStringConversion", swallowed("finite(1 Running) fast()u" + end)},
          {"kcos::COSOptimizedPropInfo::getOptimizedFlag", swallowedButInterrupt(finite + " fast()" + end)},
          {"kcos::COSOptimizedPropInfo::hasCustomGetter", two},
          {"kcos::COSAttribute::getDataType", two},
          {"kcos::COSDataTypePtr::getID", two, 3},
          {"COSGetPublicClient", two},
          {"kcos::COSInterface::getAttributeValue", two},
          {makeInterned, one, 2},
          {makeInterned, two, 3},
          {makeInterned, three, 4},
          {find, one, 1},
          {find, two, 2},
          {find, three, 3}};
}

Questions propertyQueries() {
  const Rules getter{{"kcos::internal::makeInterned", swallowedButInterrupt("r b c")},
                     {"kcos::COSInterface::findAttribute", swallowedButInterrupt("r b c")}};
  const Rules levels = byLevel(R"(
    kcos::COSClass::getClass 1 1 1    kcos::COSClass::checkClass 1 1 1    kcos::COSClass::isEnumeration 1 1 1
    kcos::COSClass::visitProperties 1 1 1    kcos::cosiToProp 3 2 1    kcos::cosiClassOfMember 3 2 1
    kcos::COSClass::getID 3 2 1    kcos::COSPropT::getName 3 2 1    kcos::COSPropT::getMemberGetAccess 1 1 1
    kcos::COSPropT::getMemberSetAccess 1 1 1    kcos::COSPropT::getDataType 1 1 1
    kcos::COSPropT::isDependent 1 1 1    kcos::COSPropT::isVisible 1 1 1    fl::i18n::to_ustring 2 2 2)",
                               getter);
  const Rules inherited{{"kcos::internal::makeInterned", swallowedButInterrupt("r")},
                        {"kcos::COSInterface::findAttribute", swallowedButInterrupt("r")},
                        {"*", swallowedButInterrupt("")}};
  return {ofRecord("ClassInfo::getProperties", "options", "info.Rich", rulesOfFlags(),
                   [](const ClassInfo& record) { return shownInFull(record.getProperties({})); }),
          ofRecord("ClassInfo::getProperties", "levels", "info.Child", levels,
                   [](const ClassInfo& record) { return namesOf(record.getProperties({0}, nullptr)); }),
          ofRecord("ClassInfo::getPropertiesOfSuperclasses", "", "info.Base", inherited,
                   [](const ClassInfo& record) { return namesOf(record.getPropertiesOfSuperclasses({})); })};
}

Questions methodQueries() {
  const Rules levels = byLevel(R"(
    kcos::COSClass::getClass 2 2 2    kcos::COSClass::checkClass 1 1 1    kcos::COSClass::isEnumeration 1 1 1
    kcos::COSClass::visitMethods 1 1 1    kcos::cosiToMethod 3 2 1    kcos::cosiClassOfMember 3 2 1
    kcos::COSClass::getID 3 2 1    kcos::COSMethodBase::getName 3 2 1    kcos::COSClass::getSimpleName 1 1 1
    kcos::COSClass::getNamespace 1 1 1    kcos::COSNamespace::getDottedName 1 1 1
    kcos::COSMethodInfo::getMemberAccess 1 1 1    kcos::COSMethodInfo::isVisible 1 1 1
    kcos::COSMethodInfo::isStatic 1 1 1    kcos::internal::makeInterned 1 1 1    fl::i18n::to_ustring 2 2 2)");
  return {ofRecord("ClassInfo::getMethods", "levels", "info.Child", levels,
                   [](const ClassInfo& record) { return namesOf(record.getMethods({0}, any, nullptr)); }),
          ofRecord("ClassInfo::getMethodsOfSuperclasses", "", "info.Base", {{"*", swallowedButInterrupt("")}},
                   [](const ClassInfo& record) {
                     return namesOf(record.getMethodsOfSuperclasses({.context = any}));
                   })};
}

Questions structureQueries() {
  const Rules levels = byLevel(R"(
    kcos::COSClass::getClass 1 1 1    kcos::COSClass::getAttributeNames1 1 1 1
    kcos::COSClass::getAttributeNames2 1 1 1    kcos::COSClass::getAttributeNames3 1 1 1
    kcos::COSClass::getAttributeNames4 1 1 1    fl::i18n::to_ustring(codecvt_ascii_to_ustring) 1 1 1)");
  return {
      ofRecord("ClassInfo::getAttributes", "", "info.Child", levels,
               [](const ClassInfo& record) { return shownList(record.getAttributes(true).attributeList1); }),
      ofRecord("ClassInfo::isA", "", "info.Child", {},
               [](const ClassInfo& record) { return shown(record.isA(u"info.Root")); }),
      ofRecord("ClassInfo::getDefaultAccessibility", "", "info.Child", {},
               [](const ClassInfo& record) { return std::to_string(record.getDefaultAccessibility()[0]); }),
      ofRecord("ClassStructureInfo::getSuperclasses", "", "info.Child", {}, shownStructure)};
}

Questions namesAndSizes() {
  const auto inSet = [](const std::string& operation, bool (*ask)(kcos::COSInternedName)) {
    const auto id = kcos::internal::makeInterned("double");
    return asks(n + operation, "", noCalls, [=] { return ask(id); });
  };
  const auto extents = [] {
    std::string all;
    for (const std::size_t extent : PropertyInfo::castSizeStringToIntegers({u" 12 ", u"n3"}))
      all += std::to_string(extent) + " ";
    return all;
  };
  return {asks(n + "PropertyInfo::castSizeStringToIntegers", "", {{"*", swallowed("")}}, extents),
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
                   auto collected, auto cosiTo, const Rules& ofVisit) {
  const auto root = std::make_shared<const ClassInfo>(idOf("info.Root"));
  const auto child = std::make_shared<const ClassInfo>(idOf("info.Child"));
  const auto visitor = std::make_shared<Visitor>(root.get());
  Options withChild = options;
  withChild.accessingClass = child.get();
  auto* const record = cosiTo(member);
  const auto ask = [&](const std::string& operation, const Rules& rules, auto answer) {
    return asks(n + type + "::" + operation, "", rules, answer);
  };
  return {ask(type, noCalls, [root] { return Visitor(root.get()).owner == root.get(); }),
          ask("clear", noCalls, [=](Answer&) { visitor->clear(withChild); }),
          ask("visit", ofVisit,
              [=] {
                visitor->clear(options);
                visitor->visit(member);
                return namesOf((*visitor).*collected);
              }),
          ask("hasAccessingClass", allPropagate, [visitor, withChild, record, root, child] {
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
  const Rules getter{{"kcos::internal::makeInterned", swallowedButInterrupt("r")},
                     {"kcos::COSInterface::findAttribute", swallowedButInterrupt("r")},
                     {"*", propagates}};
  const auto propertyVisitors = visitors<PropertyVisitorMutable>(
      "PropertyVisitorMutable", PropertyInfo::GetOptions{}, root.findProperty(r).get(),
      &PropertyVisitorMutable::properties, kcos::cosiToProp, getter);
  const auto methodVisitors = visitors<MethodVisitorMutable>(
      "MethodVisitorMutable", MethodInfo::GetOptions{.context = any}, firstOf(root.findMethods(r)),
      &MethodVisitorMutable::methods, kcos::cosiToMethod, {{"*", propagates}});
  return joined({constructors(), propertyQueries(), methodQueries(), structureQueries(), namesAndSizes(),
                 propertyVisitors, methodVisitors});
}

}  // namespace faults
