// A host may answer more oddly than the one that ships ever does: null, nothing, another kind, another status.

#include <contextdata/KCOSContextData.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace.h>
#include <gtest/gtest.h>

#include <limits>

#include "host/Dispatcher.h"
#include "host/Files.h"
#include "host/Interpreter.h"
#include "tests/faults/FaultLoop.h"
#include "tests/support/State.h"
#include "tests/support/World.h"

namespace {

using namespace KCOSContextData;
using faults::variable;
using Names = std::vector<std::u16string>;
using Plan = embedded::FaultPlan;
using Text = std::optional<std::u16string>;
using Question = std::string (*)();

template <class T>
std::shared_ptr<const embedded::PlannedAnswer> value(T answer) {
  return embedded::answering([answer]() -> T { return answer; });
}
template <class T>
std::shared_ptr<const embedded::PlannedAnswer> nothing() {
  return embedded::answering([] { return T(); });
}
const auto no = value(false), yes = value(true), empty = value(std::string()),
           done = embedded::answering([] {});

/// Every call with that argument, or any.
Plan at(const std::string& operation, const std::string& argument,
        std::shared_ptr<const embedded::PlannedAnswer> answer) {
  return {operation, 1, true, {}, argument, std::move(answer)};
}
Plan at(const std::string& operation, std::shared_ptr<const embedded::PlannedAnswer> answer) {
  return at(operation, "", std::move(answer));
}

/// Names that are none of a class: a null one, and one that another class has.
kcos::COSEnumeration<kcos::COSInternedName> oddSuperclasses() {
  struct Pass final : kcos::COSEnumerator<kcos::COSInternedName> {
    int next = 0;
    bool hasMoreElements() override { return next < 2; }
    kcos::COSInternedName nextElement() override {
      return next++ == 0 ? kcos::COSInternedName() : kcos::internal::makeInterned("Pumpe");
    }
  };
  return kcos::COSEnumeration<kcos::COSInternedName>(std::make_unique<Pass>());
}

template <const char* name>
ResolvedClassID id() {
  return ResolvedClassID::fromKnownResolvedClassID(std::string(name));
}
constexpr char childName[] = "info.Child", richName[] = "info.Rich", pumpName[] = "lab.Pump",
               modeName[] = "lab.Mode";

template <const char* name>
std::string superclasses() {
  return shownList(ClassInfo(id<name>()).structure.getSuperclasses());
}
template <const char* name>
std::string properties() {
  return namesOf(ClassInfo(id<name>()).getProperties(PropertyInfo::GetOptions()));
}
template <const char* name>
std::string methods() {
  MethodInfo::GetOptions options;
  options.context = MethodInfo::GetContext::Any;
  return namesOf(ClassInfo(id<name>()).getMethods(options));
}
template <const char* name>
std::string attributes() {
  return shownList(ClassInfo(id<name>()).getAttributes(false).attributeList1);
}

/// A property of info.Rich.
std::string rich(const std::u16string& name, const std::function<std::string(const PropertyInfo&)>& shown) {
  for (const PropertyInfo& property : ClassInfo(id<richName>()).getProperties(PropertyInfo::GetOptions()))
    if (property.name == name) return shown(property);
  return "no property";
}
std::string possible() {
  return rich(u"finite", [](const PropertyInfo& property) {
    return std::to_string(property.possibleValuesKind) + ": " + shownList(property.possibleValues);
  });
}
std::string getter() {
  return rich(u"fast", [](const PropertyInfo& property) {
    return shown(property.hasCustomGetter) + " " + shown(property.optimizedPropertyFlag);
  });
}
std::string typed() {
  return rich(u"typed", [](const PropertyInfo& property) {
    return shown(property.type) + " (" + shownList(property.sizeStrings) + ") " +
           shownList(property.validationFunctions);
  });
}

using List = bool (*)(const ResolvedClassID&, Names&, bool&);
template <const char* name, List list>
std::string listed() {
  Names names;
  bool flag = false;
  const bool found = list(id<name>(), names, flag);
  return shown(found) + (flag ? "!" : "") + " " + shownList(names);
}
constexpr Question propertyNames = listed<pumpName, getClassPropertyNames>,
                   methodNames = listed<pumpName, getClassMethodNames>,
                   memberNames = listed<modeName, getClassEnumerationNames>;

std::string named() {
  Names names;
  bool flag = false;
  const bool found = getClassPropertyNames(u"lab.Pump", names, flag);
  return shown(found) + " " + shownList(names);
}
std::string inNamespace(bool (*list)(const std::u16string&, Names&), const std::u16string& space) {
  Names names;
  const bool found = list(space, names);
  return shown(found) + " " + shownList(names);
}
std::string classesOfSpace() { return inNamespace(getNamespaceClassNames, u"lab"); }
std::string spacesOfSpace() { return inNamespace(getNamespaceNamespaceNames, u"ws"); }
std::string functionsOfSpace() { return inNamespace(getNamespaceFunctionNames, u"ws"); }

std::string isClass() { return shown(KCOSIntrospection::isKCOSClass(u"lab.Pump")); }
std::string isClassById() { return shown(KCOSIntrospection::isKCOSClass(id<pumpName>())); }
std::string hasStart() {
  bool isStatic = true;
  const bool found = KCOSIntrospection::hasMethod(id<pumpName>(), "start", isStatic);
  return shown(found) + " " + shown(isStatic);
}
std::string hasFlow() { return shown(KCOSIntrospection::hasProperty(variable("pump").get(), "Flow")); }
std::string ownNames() {
  Names names;
  KCOSIntrospection::getObjectPropertyNames(variable("own").get(), names);
  return shownList(names);
}
std::string className() { return shown(KCOSIntrospection::getClassName(variable("pump").get())); }
std::string noDots() { return shown(KCOSIntrospection::isNoDotMethodClass(variable("pump").get())); }
std::string resolved() { return shown(ResolvedClassID(u"lab.tune", u"Pump").getComponentQualifiedName()); }
std::string visible() { return shown(id<pumpName>().getNonComponentQualifiedName()); }
std::string legacy() {
  return textOf(ClassInfo(ResolvedClassID::fromLegacyString(std::string(pumpName))).classId);
}
std::string focus() { return shown(ResolvedClassID::GetDebuggerFocus().name); }

/// The value of a number that is typed, and whether an evaluation succeeds.
template <const char16_t* expression>
std::string typedValue() {
  const auto found = GetValueFromCurrentWorkspace(expression);
  return found ? KCOSIntrospection::getClassName(found.get()).empty()
                     ? "?"
                     : shown(KCOSIntrospection::getClassName(found.get()))
               : "nothing";
}
constexpr char16_t indexed[] = u"number(1)", field[] = u"record.a", flow[] = u"pump.Flow",
                   far[] = u"far.host";
std::string evaluation() {
  kxArray_tag* slot = nullptr;
  const bool succeeded = EvalcExpSuccessful(u"number(1)", 1, &slot, true);
  return shown(succeeded) + (makeSharedPtr(slot) ? " a value" : " nothing");
}
std::string size() {
  std::string all;
  for (const unsigned long extent : getSizeFromKxArray(variable("sized").get()))
    all += std::to_string(extent) + " ";
  return all;
}
std::string fieldNames() {
  Names names;
  StructContextData::getStructFieldNames(variable("record").get(), names);
  return shownList(names);
}
std::string texts() {
  Names names;
  const bool found = getStringsFromKxarray(variable("texts").get(), names);
  return shown(found) + " " + shownList(names);
}
std::string precedence() { return std::to_string(GetClassPrecedence(u"ws.First", u"ws.Second")); }
std::string foreign() { return shown(IsJavaFunction(u"net.Socket.open")); }
std::string package() {
  Names names;
  const bool found = PKXContextData::getPackageStrings(u"old", names);
  return shown(found) + " " + shownList(names);
}
std::string isPackage() { return shown(IsPKXPackage(u"old")); }
std::string classFiles() {
  Names names;
  getWhatList(u"", names, ".k");
  return shownList(names);
}
std::string arguments() {
  return shown(static_cast<bool>(getArgumentBlockMetadata(u"lab.tune", u"").inputArguments));
}

const auto noClass = nothing<kcos::COSClass*>();
const auto noName = value<const char*>(nullptr);
constexpr const char* withoutName = "logic error: basic_string: construction from null is not valid";
constexpr const char* notAsked = "not asked";
const double odd[] = {std::numeric_limits<double>::quiet_NaN(), -1};

const struct {
  const char* rule;
  Plan plan;
  Question ask;
  /// Null: as without the plan. `notAsked`: the same, because the query does not even ask.
  const char* answer;
} rows[] = {
    {"a superclass that is unknown hands nothing down", at("kcos::COSClass::getClass", "info.Base", noClass),
     superclasses<childName>, "info.Child"},
    {"also in the middle of the walk", at("kcos::COSClass::getClass", "info.Root", noClass),
     superclasses<childName>, "info.Child info.Base"},
    {"a class that is found by another name is itself",
     at("kcos::COSClass::getClass", "info.Base", embedded::answering([](kcos::COSClass*) {
          return kcos::COSClass::getClass(kcos::internal::makeInterned("lab.Device"));
        })),
     superclasses<childName>, "info.Child lab.Device"},
    {"no superclasses, no sequence",
     at("kcos::COSClass::getSuperclasses", "info.Base",
        nothing<kcos::COSEnumeration<kcos::COSInternedName>>()),
     superclasses<childName>, "info.Child info.Base"},
    {"a null name among the superclasses is none, an alias its class",
     at("kcos::COSClass::getSuperclasses", "info.Base", embedded::answering(oddSuperclasses)),
     superclasses<childName>, "info.Child info.Base lab.Pump lab.Device"},
    {"a name for users may be empty",
     at("kcos::nameresolution::getUserVisibleClassName", "info.Child", empty), superclasses<childName>, ""},
    {"and then has no attributes", at("kcos::nameresolution::getUserVisibleClassName", "info.Child", empty),
     attributes<childName>, ""},
    {"but has its members", at("kcos::nameresolution::getUserVisibleClassName", "info.Child", empty),
     properties<childName>, nullptr},
    {"an empty name is told as such", at("kcos::nameresolution::getUserVisibleClassName", empty), visible,
     ""},

    {"a superclass that fails its check hands no properties down",
     at("kcos::COSClass::checkClass", "info.Base", noClass), properties<childName>, "r c"},
    {"nor methods", at("kcos::COSClass::checkClass", "info.Base", noClass), methods<childName>, "r c"},
    {"but attributes", at("kcos::COSClass::checkClass", "info.Base", noClass), attributes<childName>,
     notAsked},
    {"a check may name another class",
     at("kcos::COSClass::checkClass", "info.Base", embedded::answering([] {
          return kcos::COSClass::getClass(kcos::internal::makeInterned("lab.Mode"));
        })),
     properties<childName>, nullptr},
    {"an enumeration has no records", at("kcos::COSClass::isEnumeration", "info.Base", yes),
     properties<childName>, "r c"},
    {"names of properties need no check", at("kcos::COSClass::checkClass", noClass), propertyNames, notAsked},
    {"names of methods do", at("kcos::COSClass::checkClass", noClass), methodNames, "false "},
    {"a name needs a check", at("kcos::COSClass::checkClass", noClass), isClass, "false"},
    {"an identity needs none", at("kcos::COSClass::checkClass", noClass), isClassById, notAsked},
    {"a class by an old name does", at("kcos::COSClass::checkClass", noClass), legacy,
     "bad class name: lab.Pump"},
    {"a class may be known by another identity",
     at("kcos::COSClass::getID", nothing<kcos::COSInternedName>()), legacy, "null"},

    {"a walk may meet nothing", at("kcos::COSClass::visitProperties", done), propertyNames, "false! "},
    {"of methods, too", at("kcos::COSClass::visitMethods", done), methodNames, "false "},
    {"a name that is missing is an error", at("kcos::COSPropT::getName", noName), propertyNames, withoutName},
    {"an answer by the name hides it", at("kcos::COSPropT::getName", noName), named, "false "},
    {"a record without the class that defines it is none", at("kcos::cosiClassOfMember", noClass),
     properties<childName>, ""},
    {"a property without a name leaves none", at("kcos::COSPropT::getName", "c", noName),
     properties<childName>, ""},
    {"a method without a name leaves none, also an inherited one",
     at("kcos::COSMethodBase::getName", "b", noName), methods<childName>, ""},
    {"names of methods are not", at("kcos::COSMethodBase::getName", "start", noName), methodNames,
     withoutName},
    {"an empty name is listed", at("kcos::COSPropT::getName", "Flow", value("")), propertyNames,
     "true! Limit Level Serial"},
    {"a member of another kind is left out", at("kcos::cosiToEnum", nothing<kcos::COSEnumInfo*>()),
     memberNames, "false "},
    {"members may be no sequence", at("kcos::COSClass::getEnumerationMembers", nothing<kcos::COSIterator>()),
     memberNames, "false "},
    {"a member without a name is an error", at("kcos::COSEnumInfo::getName", noName), memberNames,
     withoutName},

    {"no conversion, no possible values",
     at("kcos::COSTypeRepository::getConversion", "t", nothing<const kcos::COSConversion*>()), possible,
     "0: "},
    {"finite values may be no sequence",
     at("kcos::COSDataType::getPossibleValues",
        nothing<kcos::COSEnumeration<const kcos::COSPossibleValue*>>()),
     possible, "0: "},
    {"infinite ones are not asked for", at("kcos::COSDataType::isPossibleValuesFinite", no), possible, "0: "},
    {"a value of an unknown storage is left out", at("kxGetClassID", value(0)), possible, "0: "},
    {"a value without text is left out", at("omGetStringConversion", nothing<Text>()), possible,
     "1: 1 Running"},
    {"an attribute that is true tells of a get method", at("kcos::COSInterface::getAttributeValue", yes),
     getter, "true false"},
    {"a validation may be missing",
     at("kcos::COSValidationType::get", nothing<const kcos::COSValidationType*>()), typed, "double () "},
    {"or no size",
     at("kcos::COSValidationType::getDimensions",
        nothing<kcos::COSEnumeration<kcos::COSValidationDimension>>()),
     typed, "double () f"},

    {"methods may be no sequence", at("kcos::COSClass::findMethods", nothing<kcos::COSIterator>()), hasStart,
     "false true"},
    {"a property may be null", at("kcos::COSClass::findProperty", nothing<kcos::COSInterfacePtr>()), hasFlow,
     "false"},
    {"a class without a name", at("kxGetClassName", empty), className, ""},
    {"a class of another number", at("KclassRegistry::isA", yes), noDots, "true"},
    {"a name that means nothing", at("kcos::nameresolution::omResolveAnyClass", empty), resolved, ""},
    {"a scope that is unknown leaves the next one",
     at("Kdispatcher::findFunction", nothing<const Kfh_KORVAL_fn*>()), resolved, nullptr},
    {"no scope at all", at("kcos::nameresolution::omResolveAnyClass", "lab.tune", empty), resolved, ""},
    {"no debugger", at("IInterpreter::GetInterpreterBridge", nothing<IInterpreterBridge*>()), focus, ""},
    {"no focus", at("IInterpreterBridge::hasDebuggerFocus", no), focus, ""},
    {"no function, no metadata", at("Kdispatcher::findFunction", nothing<const Kfh_KORVAL_fn*>()), arguments,
     "false"},

    {"a namespace may be null",
     at("kcos::COSNamespace::getNamespaceInterface", nothing<kcos::COSInterfacePtr>()), classesOfSpace,
     "false "},
    {"or no namespace", at("kcos::cosiToNamespace", nothing<kcos::COSNamespace*>()), classesOfSpace,
     "false "},
    {"its elements no sequence", at("kcos::COSNamespace::getClasses", nothing<kcos::COSIterator>()),
     classesOfSpace, "false "},
    {"or of another kind", at("kcos::cosiToClass", noClass), classesOfSpace, "false "},
    {"or without a name", at("kcos::COSNamespace::getSimpleName", noName), spacesOfSpace, withoutName},
    {"a function that is kept back", at("kcos::COSMethodInfo::isVisible", no), functionsOfSpace, "false "},

    {"no interpreter", at("inValidInterpreterAvailable", no), evaluation, "false nothing"},
    {"a status of any other number is a failure", at("inEvalExp", value(7)), evaluation, "false nothing"},
    {"also below 0", at("inEvalExp", value(-1)), evaluation, "false nothing"},
    {"a failure may leave a value", at("inEvalExp", embedded::answering([](int) { return 7; })), evaluation,
     "false a value"},
    {"which is no answer", at("inEvalExp", embedded::answering([](int) { return 7; })), typedValue<indexed>,
     "nothing"},
    {"a success may leave none", at("inEvalExp", value(0)), evaluation, "true nothing"},
    {"which is none for the walk", at("inEvalExp", value(0)), typedValue<indexed>, "nothing"},
    {"a package is no value", at("inEvalExp", value(0)), isPackage, "false"},
    {"no variable, no value", at("inGetValueFromCurrentWorkspace", nothing<kxArray_tag*>()),
     typedValue<indexed>, "nothing"},
    {"a name of less than nothing", at("kxIsValidKorvalNameCount", value(-1)), typedValue<indexed>,
     "nothing"},
    {"an array of a field is no value", at("kxIsScalar", no), typedValue<field>, "nothing"},
    {"a field that is null is evaluated", at("kxGetField", nothing<kxArray_tag*>()), typedValue<field>,
     nullptr},
    {"a property that is null too", at("kxGetPropertyShared", nothing<kxArray_tag*>()), typedValue<flow>,
     nullptr},
    {"a list of members that is none is no path", at("inCallFcn", done), typedValue<far>, nullptr},

    {"a call without a result tells no names", at("inCallFcn", done), ownNames, "p"},
    {"nor one of another kind", at("kxGetClassID", value(2)), ownNames, "p"},
    {"a text that is missing drops all", at("Tamsix::String::isNonMissingScalarText", no), texts, "false "},
    {"an element that is null drops all", at("kxGetCell", "2", nothing<kxArray_tag*>()), texts, "false "},
    {"fields may be fewer than none", at("kxArray_tag::get_number_of_struct_fields", value(-1)), fieldNames,
     ""},
    {"a size without an answer is the value's own",
     at("inCallMethodSingleInputSingleOutput", nothing<kxArray_tag*>()), size, "1 1 "},
    {"a size that is no number is the value's own", at("kxGetDoubles", value<const double*>(odd)), size,
     "1 1 "},
    {"a size below nothing is unknown", at("kxGetDoubles", value(odd + 1)), size, ""},
    {"a size of another storage is the value's own", at("kxIsEmpty", yes), size, "1 1 "},
    {"classes that are unknown have no precedence",
     at("KobjectSystem::getClassIdentifier", nothing<const KclassIdentifier*>()), precedence, "0"},
    {"a foreign class may be unknown", at("kxCreateClassArray", nothing<kxArray_tag*>()), foreign, "false"},
    {"or its member", at("kxFindTypeMember", nothing<kxArray_tag*>()), foreign, "false"},
    {"a package that is not found has its folders", at("inCallFcnWithTrap", value(5)), package,
     "true f.k x.kexa64 Cls"},
    {"also one that is found without a value", at("inCallFcnWithTrap", value(0)), package,
     "true f.k x.kexa64 Cls"},
    {"a folder that is none is not listed",
     at("fl::filesystem::status", nothing<fl::filesystem::file_status>()), classFiles, ""},
    {"a folder may list nothing", at("ioGetDirList", done), classFiles, ""},
    {"no item of the path", at("KsearchPath::visitItems", done), package, "true A B f"},
};

TEST(OddAnswers, AreMetByTheRulesOfEachQuery) {
  const auto host = faults::makeWorld();
  const embedded::Activation active(*host);
  faults::activeWorld() = host.get();
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.rule) + ": " + row.plan.operation);
    std::string answer;
    const auto ask = [&] { answer = row.ask(); };
    ask();
    const std::string clean = answer;
    const bool isClean = row.answer == nullptr || row.answer == notAsked;
    const State state(*host);
    host->setFault(row.plan);
    const std::string thrown = thrownBy(ask);
    EXPECT_EQ(host->clearFault(), row.answer != notAsked) << "does the query ask for it?";
    EXPECT_EQ(thrown.empty() ? answer : thrown, isClean ? clean : row.answer);
    EXPECT_TRUE(isClean || clean != row.answer) << "as without the plan";
    state.expectUnchanged();
    ask();
    EXPECT_EQ(answer, clean);
  }
}

}  // namespace
