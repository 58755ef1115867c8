#include <contextdata/KCOSContextData/ClassInfo.h>

#include <memory>

#include "host/Classes.h"
#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

using namespace KCOSContextData;

const std::string n = "KCOSContextData::";
constexpr auto any = MethodInfo::GetContext::Any;
using Rules = std::vector<Rule>;

template <class Member>
std::string shownNames(const std::vector<Member>& members) {
  std::string all;
  for (const Member& member : members) all += (all.empty() ? "" : " ") + shown(member.name);
  return all;
}

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
                  const std::function<std::string(const ClassInfo&)>& ask, Rules rules) {
  const auto record = std::make_shared<const ClassInfo>(idOf(className));
  return {n + operation, form, [=](Answer& a) { a.result = ask(*record); }, std::move(rules)};
}

/// A query asks info.Child, then info.Base, then info.Root: what fails at one level leaves what the levels before it have.
struct Calls {
  std::string hostOperation;
  std::size_t ofEach[3];
};

Rules byLevel(const std::vector<Calls>& all, Rules rules = {}) {
  const std::string left[] = {"", "c", "b c"};
  for (const Calls& calls : all) {
    std::size_t call = 0;
    for (int level = 0; level < 3; ++level)
      for (std::size_t times = 0; times < calls.ofEach[level]; ++times)
        rules.push_back({calls.hostOperation, swallowedButInterrupt(left[level]), ++call});
  }
  return rules;
}

// A failure clears the list of the record whose list is being read, and of no other; what a nested record throws outside of
// its own list is a failure of the list around it.
std::vector<Question> constructors() {
  const auto left = [](const std::string& operation, std::size_t call, const std::string& superclasses) {
    return Rule{operation, swallowedButInterrupt("info.Child: " + superclasses), call};
  };
  const std::string child = "info.Child", base = child + " info.Base", root = base + " info.Root";
  const std::string userName = "kcos::nameresolution::getUserVisibleClassName", wide = "fl::i18n::to_ustring";
  const std::string getClass = "kcos::COSClass::getClass", supers = "kcos::COSClass::getSuperclasses";
  const std::string more = "kcos::COSEnumerator::hasMoreElements", next = "kcos::COSEnumerator::nextElement";
  const std::string getID = "kcos::COSClass::getID";
  return {
      {n + "ClassInfo::ClassInfo",
       "identifier",
       [id = idOf(child)](Answer& a) { a.result = shownStructure(ClassInfo(id)); },
       {{userName, passes, 1},   {wide, passes, 1},       left(userName, 2, child), left(wide, 2, child),
        left(userName, 3, base), left(wide, 3, base),     left(getClass, 1, child), left(getClass, 2, child),
        left(getClass, 3, base), left(getClass, 4, base), left(getClass, 5, root),  left(supers, 1, child),
        left(supers, 2, base),   left(supers, 3, root),   left(more, 1, child),     left(more, 2, base),
        left(more, 3, base),     left(more, 4, child),    left(next, 1, child),     left(next, 2, base),
        left(getID, 1, child),   left(getID, 2, base)}},
      {n + "ClassInfo::ClassInfo",
       "value",
       [](Answer& a) { a.result = shownStructure(ClassInfo(variable("root").get())); },
       {{"kcos::internal::makeInterned", swallowed(": "), 1},
        {getClass, swallowed(": "), 1},
        {getClass, swallowedButInterrupt("info.Root: info.Root"), 2},
        {supers, swallowedButInterrupt("info.Root: info.Root")},
        {"*", passes}}}};
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

std::vector<Question> propertyQueries() {
  const std::string c = "kcos::COSClass::", p = "kcos::COSPropT::";
  const Rules getter{{"kcos::internal::makeInterned", swallowedButInterrupt("r b c")},
                     {"kcos::COSInterface::findAttribute", swallowedButInterrupt("r b c")}};
  const Rules levels = byLevel({{c + "getClass", {1, 1, 1}},
                                {c + "checkClass", {1, 1, 1}},
                                {c + "isEnumeration", {1, 1, 1}},
                                {c + "visitProperties", {1, 1, 1}},
                                {"kcos::cosiToProp", {3, 2, 1}},
                                {"kcos::cosiClassOfMember", {3, 2, 1}},
                                {c + "getID", {3, 2, 1}},
                                {p + "getName", {3, 2, 1}},
                                {p + "getMemberGetAccess", {1, 1, 1}},
                                {p + "getMemberSetAccess", {1, 1, 1}},
                                {p + "getDataType", {1, 1, 1}},
                                {p + "isDependent", {1, 1, 1}},
                                {p + "isVisible", {1, 1, 1}},
                                {"fl::i18n::to_ustring", {2, 2, 2}}},
                               getter);
  const Rules inherited{{"kcos::internal::makeInterned", swallowedButInterrupt("r")},
                        {"kcos::COSInterface::findAttribute", swallowedButInterrupt("r")},
                        {"*", swallowedButInterrupt("")}};
  return {ofRecord(
              "ClassInfo::getProperties", "options", "info.Rich",
              [](const ClassInfo& record) { return shownInFull(record.getProperties({})); }, rulesOfFlags()),
          ofRecord(
              "ClassInfo::getProperties", "levels", "info.Child",
              [](const ClassInfo& record) { return shownNames(record.getProperties({0}, nullptr)); }, levels),
          ofRecord(
              "ClassInfo::getPropertiesOfSuperclasses", "", "info.Base",
              [](const ClassInfo& record) { return shownNames(record.getPropertiesOfSuperclasses({})); },
              inherited)};
}

std::vector<Question> methodQueries() {
  const std::string c = "kcos::COSClass::", m = "kcos::COSMethodInfo::";
  const Rules levels = byLevel({{c + "getClass", {2, 2, 2}},
                                {c + "checkClass", {1, 1, 1}},
                                {c + "isEnumeration", {1, 1, 1}},
                                {c + "visitMethods", {1, 1, 1}},
                                {"kcos::cosiToMethod", {3, 2, 1}},
                                {"kcos::cosiClassOfMember", {3, 2, 1}},
                                {c + "getID", {3, 2, 1}},
                                {"kcos::COSMethodBase::getName", {3, 2, 1}},
                                {c + "getSimpleName", {1, 1, 1}},
                                {c + "getNamespace", {1, 1, 1}},
                                {"kcos::COSNamespace::getDottedName", {1, 1, 1}},
                                {m + "getMemberAccess", {1, 1, 1}},
                                {m + "isVisible", {1, 1, 1}},
                                {m + "isStatic", {1, 1, 1}},
                                {"kcos::internal::makeInterned", {1, 1, 1}},
                                {"fl::i18n::to_ustring", {3, 3, 3}}});
  return {
      ofRecord(
          "ClassInfo::getMethods", "levels", "info.Child",
          [](const ClassInfo& record) { return shownNames(record.getMethods({0}, any, nullptr)); }, levels),
      ofRecord("ClassInfo::getMethodsOfSuperclasses", "", "info.Base",
               [](const ClassInfo& record) {
                 return shownNames(record.getMethodsOfSuperclasses({.context = any}));
               },
               {{"*", swallowedButInterrupt("")}})};
}

std::vector<Question> structureQueries() {
  const std::string c = "kcos::COSClass::";
  const Rules levels = byLevel({{c + "getClass", {1, 1, 1}},
                                {c + "getAttributeNames1", {1, 1, 1}},
                                {c + "getAttributeNames2", {1, 1, 1}},
                                {c + "getAttributeNames3", {1, 1, 1}},
                                {c + "getAttributeNames4", {1, 1, 1}},
                                {"fl::i18n::to_ustring(codecvt_ascii_to_ustring)", {1, 1, 1}}});
  return {
      ofRecord(
          "ClassInfo::getAttributes", "", "info.Child",
          [](const ClassInfo& record) { return shownList(record.getAttributes(true).attributeList1); },
          levels),
      ofRecord("ClassInfo::isA", "", "info.Child",
               [](const ClassInfo& record) { return shown(record.isA(u"info.Root")); }, {}),
      ofRecord("ClassInfo::getDefaultAccessibility", "", "info.Child",
               [](const ClassInfo& record) { return std::to_string(record.getDefaultAccessibility()[0]); },
               {}),
      ofRecord("ClassStructureInfo::getSuperclasses", "", "info.Child", shownStructure, {})};
}

std::vector<Question> namesAndSizes() {
  const auto inSet = [](bool (*ask)(kcos::COSInternedName)) {
    return [ask, id = kcos::internal::makeInterned("double")](Answer& a) { a.result = shown(ask(id)); };
  };
  return {{n + "PropertyInfo::castSizeStringToIntegers",
           "",
           [](Answer& a) {
             for (const std::size_t extent : PropertyInfo::castSizeStringToIntegers({u" 12 ", u"n3"}))
               a.result += std::to_string(extent) + " ";
           },
           {{"*", swallowed("")}}},
          {n + "MethodInfo::isOperatorOverload",
           "",
           [](Answer& a) { a.result = shown(MethodInfo::isOperatorOverload(std::string("plus"))); },
           {{"*", passes}}},
          {n + "MethodInfo::isClassToCompleteMethodsForBeforeDot",
           "",
           inSet(MethodInfo::isClassToCompleteMethodsForBeforeDot),
           {}},
          {n + "MethodInfo::isClassToCompleteMethodsForAfterDot",
           "",
           inSet(MethodInfo::isClassToCompleteMethodsForAfterDot),
           {}}};
}

/// A visitor of its own, over the record of info.Root, for which info.Child asks.
template <class Visitor, class Options>
std::vector<Question> visitors(const std::string& type, const Options& options, kcos::COSInterface* member,
                               auto collected, auto cosiTo, Rules ofVisit) {
  const auto root = std::make_shared<const ClassInfo>(idOf("info.Root"));
  const auto child = std::make_shared<const ClassInfo>(idOf("info.Child"));
  const auto visitor = std::make_shared<Visitor>(root.get());
  Options withChild = options;
  withChild.accessingClass = child.get();
  auto* const record = cosiTo(member);
  const auto ask = [&](const std::string& operation, auto answer, Rules rules) {
    return Question{n + type + "::" + operation, "", [=](Answer& a) { a.result = answer(); },
                    std::move(rules)};
  };
  return {ask(type, [root] { return std::to_string(Visitor(root.get()).owner == root.get()); }, {}),
          ask("clear", [=] { return visitor->clear(withChild), std::string("cleared"); }, {}),
          ask(
              "visit",
              [=] {
                visitor->clear(options);
                visitor->visit(member);
                return shownNames((*visitor).*collected);
              },
              std::move(ofVisit)),
          ask("hasAccessingClass",
              [visitor, withChild, record, root, child] {
                visitor->clear(withChild);
                return shown(visitor->hasAccessingClass(record));
              },
              {{"*", passes}})};
}

template <class Iterator>
kcos::COSInterface* firstOf(Iterator iterator) {
  return iterator.nextElement().get();
}

}  // namespace

std::vector<Question> classInfoQuestions() {
  std::vector<Question> all;
  const kcos::COSClass& root = *kcos::COSClass::getClass(kcos::internal::makeInterned("info.Root"));
  const auto r = kcos::internal::makeInterned("r");
  const Rules getter{{"kcos::internal::makeInterned", swallowedButInterrupt("r")},
                     {"kcos::COSInterface::findAttribute", swallowedButInterrupt("r")},
                     {"*", passes}};
  const auto propertyVisitors = visitors<PropertyVisitorMutable>(
      "PropertyVisitorMutable", PropertyInfo::GetOptions{}, root.findProperty(r).get(),
      &PropertyVisitorMutable::properties, kcos::cosiToProp, getter);
  const auto methodVisitors = visitors<MethodVisitorMutable>(
      "MethodVisitorMutable", MethodInfo::GetOptions{.context = any}, firstOf(root.findMethods(r)),
      &MethodVisitorMutable::methods, kcos::cosiToMethod, {{"*", passes}});
  for (const auto& questions : {constructors(), propertyQueries(), methodQueries(), structureQueries(),
                                namesAndSizes(), propertyVisitors, methodVisitors})
    all.insert(all.end(), questions.begin(), questions.end());
  return all;
}

}  // namespace faults
