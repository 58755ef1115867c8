// The exported operations, one row each; packaging/operations.txt has the same list, but for the session's own.

#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>
#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/SearchPath.h>
#include <contextdata/Workspace/Values.h>
#include <contextdata/Workspace/VariableMethods.h>

#include "tools/query/Handlers.h"
#include "tools/query/Operation.h"

namespace tools::query {

namespace {

using namespace KCOSContextData;
using namespace KCOSIntrospection;

using Text = std::u16string;
using Names = std::vector<Text>;
using PropertyRecords = std::vector<PropertyInfo>;
using MethodRecords = std::vector<MethodInfo>;

/// An operation with an overload for narrow text.
template <class R>
Operation byName(const char* name, R (*wide)(const Text&), R (*narrow)(const std::string&)) {
  return {name, {narrowly(form(narrow, "name")), form(wide, "name")}};
}

Operation nameList(const char* name, bool (*byIdentifier)(const ResolvedClassID&, Names&, bool&),
                   bool (*byClassName)(const Text&, Names&, bool&)) {
  return {name,
          {given("id", form(byIdentifier, late("id"), "names", "classFlag")),
           form(byClassName, late("className"), "names", "classFlag")}};
}

Names superclassesOf(const ClassInfo& record) { return record.structure.getSuperclasses(); }

}  // namespace

const std::vector<Operation>& operations() {
  static const std::vector<Operation> all = {
      // A class name
      {"ResolvedClassID", handleIdentifier},
      byName<ResolvedClassID>("fromKnownResolvedClassID", ResolvedClassID::fromKnownResolvedClassID,
                              ResolvedClassID::fromKnownResolvedClassID),
      byName<ResolvedClassID>("fromLegacyString", ResolvedClassID::fromLegacyString,
                              ResolvedClassID::fromLegacyString),
      byName<bool>("isAlreadyResolved", ResolvedClassID::isAlreadyResolved,
                   ResolvedClassID::isAlreadyResolved),
      {"getComponentQualifiedName", {form(&ResolvedClassID::getComponentQualifiedName, "id")}},
      {"getNonComponentQualifiedName", {form(&ResolvedClassID::getNonComponentQualifiedName, "id")}},
      {"GetDebuggerFocus", {form(ResolvedClassID::GetDebuggerFocus)}},

      // The class system
      {"getCOSClass",
       {given("id", form<kcos::COSClass*(const ResolvedClassID&)>(getCOSClass, "id")),
        given("object", form<kcos::COSClass*(const kxArray_tag*)>(getCOSClass, "object")),
        form<kcos::COSClass*(const Text&)>(getCOSClass, "className")}},
      {"getClassName", {form(getClassName, existing("value"))}},
      {"getConstructorName", {form(getConstructorName, "className")}},
      {"getNamespaceInterface", {form(getNamespaceInterface, "namespaceName")}},
      {"hasMethod",
       {given("object",
              form<bool(const kxArray_tag*, const std::string&)>(hasMethod, late("object"), "methodName")),
        given("id", form<bool(const ResolvedClassID&, const std::string&, bool&)>(hasMethod, late("id"),
                                                                                  "methodName", "isStatic")),
        form<bool(const Text&, const std::string&, bool&)>(hasMethod, late("className"), "methodName",
                                                           "isStatic")}},
      {"hasProperty", {form(hasProperty, "object", "propertyName")}},
      {"isKCOSClass",
       {given("id", form<bool(const ResolvedClassID&)>(isKCOSClass, "id")),
        form<bool(const Text&)>(isKCOSClass, "className")}},
      {"isKCOSObject", {form(isKCOSObject, "value")}},
      {"isKCOSNamespace", {form(isKCOSNamespace, "namespaceName")}},
      {"isKCOSClassDerivedFrom",
       {givenIdentifier("derived", form<bool(const ResolvedClassID&, const ResolvedClassID&)>(
                                       isKCOSClassDerivedFrom, "derived", "base")),
        form<bool(const Text&, const Text&)>(isKCOSClassDerivedFrom, "derived", "base")}},

      // Completion tables
      {"getKCOSMethodsExcludeSet", {form(getKCOSMethodsExcludeSet)}},
      {"getVX2KorvalNamespacesExcludeSet", {form(getVX2KorvalNamespacesExcludeSet)}},
      {"getVX2NamespacesExcludeSet", {form(getVX2NamespacesExcludeSet)}},
      {"getNoDotMethodClassesExcludeSet", {form(getNoDotMethodClassesExcludeSet)}},
      {"getAttributesToTreatAsHavingCustomGetters", {form(getAttributesToTreatAsHavingCustomGetters)}},

      // Name lists
      nameList("getClassConstantPropertyNames", getClassConstantPropertyNames, getClassConstantPropertyNames),
      nameList("getClassPropertyNames", getClassPropertyNames, getClassPropertyNames),
      nameList("getClassStaticMethodNames", getClassStaticMethodNames, getClassStaticMethodNames),
      nameList("getClassMethodNames", getClassMethodNames, getClassMethodNames),
      nameList("getClassEnumerationNames", getClassEnumerationNames, getClassEnumerationNames),

      // Records of classes and members, and the visitors in them
      {"ClassInfo", handleRecord},
      {"getProperties",
       {given("accessLevels", form<PropertyRecords(const std::vector<std::int32_t>&, const ClassInfo*) const>(
                                  &ClassInfo::getProperties, "record", "accessLevels", "accessingClass")),
        form<PropertyRecords(const PropertyInfo::GetOptions&) const>(&ClassInfo::getProperties, "record",
                                                                     "options")}},
      {"getPropertiesOfSuperclasses", {form(&ClassInfo::getPropertiesOfSuperclasses, "record", "options")}},
      {"getMethods",
       {given("access", form<MethodRecords(const std::vector<std::int32_t>&, const MethodInfo::GetContext&,
                                           const ClassInfo*) const>(&ClassInfo::getMethods, "record",
                                                                    "access", "context", "accessingClass")),
        form<MethodRecords(const MethodInfo::GetOptions&) const>(&ClassInfo::getMethods, "record",
                                                                 "options")}},
      {"getMethodsOfSuperclasses", {form(&ClassInfo::getMethodsOfSuperclasses, "record", "options")}},
      {"getAttributes", {form(&ClassInfo::getAttributes, "record", "argument")}},
      {"isA",
       {given("identity", form<bool(kcos::COSInternedName) const>(&ClassInfo::isA, "record", "identity")),
        form<bool(const Text&) const>(&ClassInfo::isA, "record", "className")}},
      {"getDefaultAccessibility", {form(&ClassInfo::getDefaultAccessibility, "record")}},
      {"getSuperclasses", {form(superclassesOf, "record")}},
      {"castSizeStringToIntegers", {form(PropertyInfo::castSizeStringToIntegers, "sizeStrings")}},
      byName<bool>("isOperatorOverload", MethodInfo::isOperatorOverload, MethodInfo::isOperatorOverload),
      {"isClassToCompleteMethodsForBeforeDot",
       {form(MethodInfo::isClassToCompleteMethodsForBeforeDot, "classId")}},
      {"isClassToCompleteMethodsForAfterDot",
       {form(MethodInfo::isClassToCompleteMethodsForAfterDot, "classId")}},
      {"PropertyVisitorMutable", handlePropertyVisitor},
      {"MethodVisitorMutable", handleMethodVisitor},
      {"visit", handleVisit},
      {"clear", handleClear},
      {"hasAccessingClass", handleHasAccessingClass},

      // Objects
      {"callFunctionOnObject", {form(callFunctionOnObject, existing("object"), "functionName", "names")}},
      {"getObjectPropertyNames", {form(getObjectPropertyNames, existing("object"), "names")}},
      {"isNoDotMethodClass", {form(isNoDotMethodClass, existing("value"))}},
      {"isObjectOrIsOpaque", {form(isObjectOrIsOpaque, existing("value"))}},
      {"getOpaqueObjectProperties", {form(getOpaqueObjectProperties, existing("value"), "names")}},
      {"getOpaqueObjectMethods", {form(getOpaqueObjectMethods, existing("value"), "names")}},
      {"getMethodsForWSVariable", {form(getMethodsForWSVariable, "name", "value")}},

      // Namespaces and packages, and what functions declare
      {"getNamespaceFunctionNames", {form(getNamespaceFunctionNames, "ns", "names")}},
      {"getNamespaceClassNames", {form(getNamespaceClassNames, "ns", "names")}},
      {"getNamespaceNamespaceNames", {form(getNamespaceNamespaceNames, "ns", "names")}},
      {"getKCOSAllNamespaces", {form(getKCOSAllNamespaces)}},
      {"getArgumentBlockMetadata", {form(getArgumentBlockMetadata, "functionReference", "functionName")}},
      {"IsPKXPackage", {form(IsPKXPackage, "name")}},
      {"getPackageStrings", {form(PKXContextData::getPackageStrings, "package", "names")}},

      // Values
      {"makeSharedPtr", handleAdoption},
      {"getSharedProperty", {form(getSharedProperty, existing("object"), "name", "index")}},
      {"getStringsFromKxarray", {form(getStringsFromKxarray, "value", "strings")}},
      {"getSizeFromKxArray", {form(getSizeFromKxArray, "value")}},
      {"getStructFieldNames", {form(StructContextData::getStructFieldNames, existing("value"), "names")}},
      {"GetClassPrecedence", {form(GetClassPrecedence, "classA", "classB")}},
      {"IsJavaFunction", {form(IsJavaFunction, "name")}},

      // The workspace
      {"EvalcExpSuccessful", handleEvaluation},
      {"GetValueFromCurrentWorkspace", {form(GetValueFromCurrentWorkspace, "expression")}},
      {"AutoPushingExecutionFrame", handlePlainFrame},
      {"FunctionExecutionFrame", handleFunctionFrame},
      {"accept", handleAccept},
      {"getWhatList", {form(getWhatList, "folder", late("names"), "kind")}},
      {"getBuiltinFunctionNames", {form(getBuiltinFunctionNames)}},

      // The session's own
      {"codeFailure", handleCodeFailure}};
  return all;
}

}  // namespace tools::query
