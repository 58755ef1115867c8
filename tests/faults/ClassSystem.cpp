#include <contextdata/KCOSContextData.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/VariableMethods.h>

#include "tests/faults/FaultLoop.h"

namespace faults {

namespace {

using namespace KCOSContextData;
using namespace KCOSIntrospection;
using Names = std::vector<std::u16string>;

const std::string contextData = "KCOSContextData::", introspection = "KCOSIntrospection::";
constexpr const char* conversion = "fl::i18n::to_ustring(codecvt_ascii_to_ustring)";

ResolvedClassID idOf(const std::string& name) { return ResolvedClassID::fromKnownResolvedClassID(name); }
std::string textOf(const ResolvedClassID& id) { return static_cast<const kcos::COSInternedName&>(id).text(); }
std::string textOf(const kcos::COSClass* cls) { return cls != nullptr ? "a class" : "null"; }

/// While it lives, components are switched off.
struct WithoutComponents {
  WithoutComponents() { activeWorld()->setComponents(false); }
  ~WithoutComponents() { activeWorld()->setComponents(true); }
};

Questions identifiers() {
  const std::string type = contextData + "ResolvedClassID::", constructor = type + "ResolvedClassID";
  const auto inContext = [] { return textOf(ResolvedClassID(u"nowhere", u"Pump")); };
  const auto inScope = [] { return textOf(ResolvedClassID(activeWorld()->function("lab.tune"), u"Pump")); };
  const auto switchedOff = [](auto ask) { return [ask] { return WithoutComponents(), ask(); }; };
  const ResolvedClassID pump = idOf("plant:lab.Pump");
  Questions all{
      asks(constructor, "context", inContext),
      asks(constructor, "context, switch off", switchedOff(inContext)),
      asks(constructor, "scope", inScope),
      asks(constructor, "scope, switch off", switchedOff(inScope)),
      asks(constructor, "object", [] { return textOf(ResolvedClassID(variable("pump").get())); }),
      asks(type + "getComponentQualifiedName", "", [=] { return pump.getComponentQualifiedName(); }),
      asks(type + "getNonComponentQualifiedName", "", [=] { return pump.getNonComponentQualifiedName(); }),
      asks(type + "GetDebuggerFocus", "", [] { return ResolvedClassID::GetDebuggerFocus().name; })};
  const auto addFactories = [&](const std::string& form, const auto& name) {
    all.push_back(asks(type + "fromKnownResolvedClassID", form,
                       [=] { return textOf(ResolvedClassID::fromKnownResolvedClassID(name)); }));
    all.push_back(asks(type + "fromLegacyString", form,
                       [=] { return textOf(ResolvedClassID::fromLegacyString(name)); }));
    all.push_back(
        asks(type + "isAlreadyResolved", form, [=] { return ResolvedClassID::isAlreadyResolved(name); }));
  };
  addFactories("narrow", std::string("Pumpe"));
  addFactories("UTF-16", std::u16string(u"Pumpe"));
  return all;
}

Questions lookUps() {
  const std::string n = introspection;
  const std::u16string name = u"lab.Pump";
  // Made before the questions are asked, so that only the questions are logged.
  const ResolvedClassID pump = idOf("plant:lab.Pump"), device = idOf("plant:lab.Device");
  return {
      asks(n + "getCOSClass", "identifier", [=] { return textOf(getCOSClass(pump)); }),
      asks(n + "getCOSClass", "value", [] { return textOf(getCOSClass(variable("pump").get())); }),
      asks(n + "getCOSClass", "name", [=] { return textOf(getCOSClass(name)); }),
      asks(n + "isKCOSClass", "identifier", [=] { return isKCOSClass(pump); }),
      asks(n + "isKCOSClass", "name", [=] { return isKCOSClass(name); }),
      asks(n + "isKCOSObject", "", [] { return isKCOSObject(variable("pump").get()); }),
      asks(n + "hasMethod", "value", [] { return hasMethod(variable("pump").get(), "start"); }),
      asks(n + "hasProperty", "", [] { return hasProperty(variable("pump").get(), "Flow"); }),
      asks(n + "hasMethod", "identifier", [=](Answer& a) { return hasMethod(pump, "make", a.flag); }),
      asks(n + "hasMethod", "name", [=](Answer& a) { return hasMethod(name, "make", a.flag); }),
      asks(n + "isKCOSClassDerivedFrom", "identifiers", [=] { return isKCOSClassDerivedFrom(pump, device); }),
      asks(n + "isKCOSClassDerivedFrom", "names",
           [=] { return isKCOSClassDerivedFrom(name, u"lab.Device"); }),
      asks(n + "getClassName", "", [] { return getClassName(variable("pump").get()); }),
      asks(n + "getConstructorName", "", [=] { return getConstructorName(name); }),
      asks(n + "getNamespaceInterface", "", [] { return getNamespaceInterface(u"lab") != nullptr; }),
      asks(n + "isKCOSNamespace", "", [] { return isKCOSNamespace(u"lab"); })};
}

// The tables ask nothing of the host: there is no call that could fail, which the loop finds out by itself.
Questions tables() {
  const auto sizeOf = [](const std::string& operation, auto table) {
    return asks(contextData + operation, "", [table] { return table().size(); });
  };
  return {sizeOf("getKCOSMethodsExcludeSet", getKCOSMethodsExcludeSet),
          sizeOf("getVX2KorvalNamespacesExcludeSet", getVX2KorvalNamespacesExcludeSet),
          sizeOf("getVX2NamespacesExcludeSet", getVX2NamespacesExcludeSet),
          sizeOf("getNoDotMethodClassesExcludeSet", getNoDotMethodClassesExcludeSet),
          sizeOf("getAttributesToTreatAsHavingCustomGetters", getAttributesToTreatAsHavingCustomGetters)};
}

Questions memberNames() {
  Questions all;
  // With what precedes the listing of a name, and the setting of the flag.
  const auto add = [&](const std::string& operation, const std::string& id, const std::u16string& name,
                       bool (*byIdentifier)(const ResolvedClassID&, Names&, bool&),
                       bool (*byName)(const std::u16string&, Names&, bool&), const std::string& appendsAfter,
                       const std::string& setsFlagAfter = "") {
    all.push_back(asks(
        contextData + operation, "identifier",
        [=, id = idOf(id)](Answer& a) { return byIdentifier(id, a.names, a.flag); }, appendsAfter,
        setsFlagAfter));
    all.push_back(asks(
        contextData + operation, "name", [=](Answer& a) { return byName(name, a.names, a.flag); },
        appendsAfter, setsFlagAfter));
  };
  constexpr const char* flag = "kcos::COSClass::getClassFlag";
  add("getClassConstantPropertyNames", "plant:lab.Pump", u"lab.Pump", getClassConstantPropertyNames,
      getClassConstantPropertyNames, conversion, flag);
  add("getClassPropertyNames", "plant:lab.Pump", u"lab.Pump", getClassPropertyNames, getClassPropertyNames,
      conversion, flag);
  add("getClassStaticMethodNames", "plant:lab.Pump", u"lab.Pump", getClassStaticMethodNames,
      getClassStaticMethodNames, conversion);
  add("getClassMethodNames", "plant:lab.Pump", u"lab.Pump", getClassMethodNames, getClassMethodNames,
      conversion);
  add("getClassEnumerationNames", "lab.Mode", u"lab.Mode", getClassEnumerationNames, getClassEnumerationNames,
      conversion);
  return all;
}

Questions namespaces() {
  const auto listing = [](const std::string& operation, bool (*list)(const std::u16string&, Names&)) {
    return asks(
        contextData + operation, "", [list](Answer& a) { return list(u"ws", a.names); }, conversion);
  };
  return {listing("getNamespaceFunctionNames", getNamespaceFunctionNames),
          listing("getNamespaceClassNames", getNamespaceClassNames),
          listing("getNamespaceNamespaceNames", getNamespaceNamespaceNames),
          asks(contextData + "getKCOSAllNamespaces", "", [] { return getKCOSAllNamespaces() != nullptr; })};
}

Questions objects() {
  const std::string n = introspection;
  const auto propertyNames = [] {
    Names names;
    getObjectPropertyNames(variable("own").get(), names);
    return shownList(names);
  };
  const auto metadata = [] {
    const FunctionMetadata found = getArgumentBlockMetadata(u"lab.tune", u"tune");
    return std::to_string(found.flags) + (found.inputArguments && found.outputArguments ? " both" : "");
  };
  const auto methodsOf = [](const std::string& name) {
    return asks("getMethodsForWSVariable", name,
                [name] { return shownList(getMethodsForWSVariable(u"Pump", variable(name))); });
  };
  return {asks(n + "callFunctionOnObject", "",
               [](Answer& a) { return callFunctionOnObject(variable("own").get(), "properties", a.names); }),
          asks(n + "getObjectPropertyNames", "own answer", propertyNames),
          asks(
              n + "getObjectPropertyNames", "class walk",
              [](Answer& a) { getObjectPropertyNames(variable("failing").get(), a.names); }, conversion),
          asks(n + "isNoDotMethodClass", "", [] { return isNoDotMethodClass(variable("far").get()); }),
          asks(contextData + "getArgumentBlockMetadata", "", metadata),
          methodsOf("pump"),
          methodsOf("far")};
}

}  // namespace

Questions classSystemQuestions() {
  return joined({identifiers(), lookUps(), tables(), memberNames(), namespaces(), objects()});
}

}  // namespace faults
