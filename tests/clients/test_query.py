"""The subcommand `query`: the protocol, each op in each form, errors, the trace, interrupts."""
import json
import signal
import subprocess
import threading
import time
import unittest

from Command import COMMAND, HANG, SOURCE, CommandTest, environment, pauses, run

PUMP = "core:lab.Pump"
SURROGATE = {"utf16": [0x61, 0xD800]}
BYTES = {"bytes": [0x66, 0xFF]}
BAD_NAME = "KCOSContextData::ResolvedClassID::BadClassNameException"

TOP = {"id": "rig.Top"}
BASE = {"id": "rig.Base"}
AIDE = {"id": "rig.Aide"}
LARGEST = 2**64 - 1


def prop(name, **fields):
    """A property's record, whose fields are the plainest ones where they are not given."""
    return {"name": name, "type": "", "sizeStrings": [], "validationFunctions": [], "isDependent": False,
            "hasCustomGetter": False, "optimizedPropertyFlag": True, "possibleValuesKind": 0, "possibleValues": [],
            **fields}


def method(name, defining_class="rig.Top", static=False):
    return {"name": name, "definingClass": defining_class, "isStatic": static}


def tree(name, *superclasses, class_id=None):
    return {"name": name, "superclasses": list(superclasses), "classId": class_id or name}


def property_visitor(*properties, owner="rig.Top", hidden=(), levels=(0,), kinds=(0, 1), accessing=None, all_of_them=False):
    return {"owner": owner, "accessLevels": list(levels), "accessorKinds": list(kinds), "accessingClass": accessing,
            "includeHidden": all_of_them, "properties": list(properties), "hiddenProperties": list(hidden)}


def method_visitor(*methods, owner="rig.Top", hidden=(), access=(0,), accessing=None, context=0, constructors=False,
                   operators=False, all_of_them=False):
    return {"owner": owner, "access": list(access), "accessingClass": accessing, "context": context,
            "includeConstructors": constructors, "includeOperatorOverloads": operators, "includeHidden": all_of_them,
            "methods": list(methods), "hiddenMethods": list(hidden)}


SHARED = prop("Shared")
SIZE = prop("Size", type="double", sizeStrings=["2", ":"], validationFunctions=["mustBePositive"], isDependent=True)
LEVEL = prop("Level", type="double", possibleValuesKind=2, possibleValues=["1", "2"])
INNER = prop("Inner")
SECRET = prop("Secret", hasCustomGetter=True, optimizedPropertyFlag=False)
RUN, BASE_VENT = method("run", "rig.Base"), method("vent", "rig.Base")
START, MAKE, PLUS, VENT = method("start"), method("make", static=True), method("plus"), method("vent")
BASE_TREE = tree("rig.Base")
TOP_TREE = tree("rig.Top", tree("rig.Left", BASE_TREE), tree("rig.Right", BASE_TREE))

# (op, arguments, what the answer holds besides the op)
ANSWERS = [
    ("ResolvedClassID", {"context": "tune", "className": "Pump"}, {"result": PUMP}),
    ("ResolvedClassID", {"context": "bare", "className": "Pump"}, {"result": ""}),
    ("ResolvedClassID", {"context": "", "className": "lab.Pump"}, {"result": PUMP}),
    ("ResolvedClassID", {"context": "", "className": ""}, {"result": ""}),
    ("ResolvedClassID", {"context": "", "className": ".Pump"}, {"result": ""}),
    ("ResolvedClassID", {"scope": "tune", "className": "Pump"}, {"result": PUMP}),
    ("ResolvedClassID", {"scope": "bare", "className": "Pump"}, {"result": ""}),
    ("ResolvedClassID", {"scope": None, "className": "lab.Mode"}, {"result": "lab.Mode"}),
    ("ResolvedClassID", {"object": {"variable": "pump"}}, {"result": PUMP}),
    ("ResolvedClassID", {"object": {"variable": "n"}}, {"result": ""}),
    ("ResolvedClassID", {"object": None}, {"result": ""}),
    ("fromKnownResolvedClassID", {"name": "no.such"}, {"result": "no.such"}),
    ("fromKnownResolvedClassID", {"name": ""}, {"result": ""}),
    ("fromKnownResolvedClassID", {"name": "a\0b"}, {"result": "a\0b"}),
    ("fromKnownResolvedClassID", {"name": "x" * 100000}, {"result": "x" * 100000}),
    ("fromKnownResolvedClassID", {"name": "gr\u00fcn"}, {"result": "gr?n"}),
    ("fromKnownResolvedClassID", {"name": SURROGATE}, {"result": "a?"}),
    ("fromKnownResolvedClassID", {"name": "gr\u00fcn", "narrow": True}, {"result": "gr\u00fcn"}),
    ("fromKnownResolvedClassID", {"name": BYTES, "narrow": True}, {"result": BYTES}),
    ("fromLegacyString", {"name": "lab.OldPump"}, {"result": PUMP}),
    ("fromLegacyString", {"name": "lab.OldPump", "narrow": True}, {"result": PUMP}),
    ("fromLegacyString", {"name": "no.such"}, {"exception": {"type": BAD_NAME, "className": "no.such"}}),
    ("fromLegacyString", {"name": ""}, {"exception": {"type": BAD_NAME, "className": ""}}),
    ("fromLegacyString", {"name": "lab.Broken"}, {"exception": {"type": BAD_NAME, "className": "lab.Broken"}}),
    ("fromLegacyString", {"name": "gr\u00fcn"}, {"exception": {"type": BAD_NAME, "className": "gr?n"}}),
    ("fromLegacyString", {"name": BYTES, "narrow": True}, {"exception": {"type": BAD_NAME, "className": BYTES}}),
    ("isAlreadyResolved", {"name": PUMP}, {"result": True}),
    ("isAlreadyResolved", {"name": "lab.Pump"}, {"result": False}),
    ("isAlreadyResolved", {"name": PUMP, "narrow": True}, {"result": True}),
    ("isAlreadyResolved", {"name": "", "narrow": True}, {"result": False}),
    ("getComponentQualifiedName", {"id": PUMP}, {"result": PUMP}),
    ("getComponentQualifiedName", {"id": ""}, {"result": ""}),
    ("getComponentQualifiedName", {"id": {"id": "gr\u00fcn"}}, {"result": "gr\u00fcn"}),
    ("getComponentQualifiedName", {"id": {"object": {"variable": "pump"}}}, {"result": PUMP}),
    ("getComponentQualifiedName", {"id": {"scope": "tune", "className": "Pump"}}, {"result": PUMP}),
    ("getComponentQualifiedName", {"id": {"context": "tune", "className": "Pump"}}, {"result": PUMP}),
    ("getNonComponentQualifiedName", {"id": PUMP}, {"result": "lab.Pump"}),
    ("getNonComponentQualifiedName", {"id": ""}, {"result": ""}),
    ("GetDebuggerFocus", {}, {"result": {"name": "lost", "first": 3, "second": 4}}),
    ("getCOSClass", {"id": "lab.OldPump"}, {"result": PUMP}),
    ("getCOSClass", {"id": "lab.Broken"}, {"result": "lab.Broken"}),
    ("getCOSClass", {"id": ""}, {"result": None}),
    ("getCOSClass", {"object": {"variable": "pump"}}, {"result": PUMP}),
    ("getCOSClass", {"object": {"variable": "broken"}}, {"result": None}),
    ("getCOSClass", {"object": None}, {"result": None}),
    ("getCOSClass", {"className": "lab.Mode"}, {"result": "lab.Mode"}),
    ("getCOSClass", {"className": "lab.Broken"}, {"result": None}),
    ("getCOSClass", {"className": SURROGATE}, {"result": None}),
    ("getClassName", {"value": {"variable": "pump"}}, {"result": "lab.Pump"}),
    ("getClassName", {"value": {"variable": "n"}}, {"result": "double"}),
    ("getConstructorName", {"className": "a.b.C"}, {"result": "C"}),
    ("getConstructorName", {"className": "a.b."}, {"result": ""}),
    ("getConstructorName", {"className": "a.\0"}, {"result": "\0"}),
    ("getConstructorName", {"className": {"utf16": [0x2E, 0xD83D]}}, {"result": {"utf16": [0xD83D]}}),
    ("getConstructorName", {"className": {"utf16": [0x2E, 0xD83D, 0xDE00]}}, {"result": "\U0001F600"}),
    ("getNamespaceInterface", {"namespaceName": "idle.space"}, {"result": "idle.space"}),
    ("getNamespaceInterface", {"namespaceName": "lab.Pump"}, {"result": None}),
    ("getNamespaceInterface", {"namespaceName": ""}, {"result": None}),
    ("hasMethod", {"object": {"variable": "pump"}, "methodName": "start"}, {"result": True}),
    ("hasMethod", {"object": {"variable": "pump"}, "methodName": "Flow"}, {"result": False}),
    ("hasMethod", {"object": None, "methodName": "start"}, {"result": False}),
    ("hasMethod", {"id": PUMP, "methodName": "list"}, {"result": True, "isStatic": True}),
    ("hasMethod", {"id": PUMP, "methodName": "start", "isStatic": True}, {"result": True, "isStatic": False}),
    ("hasMethod", {"id": PUMP, "methodName": "Flow", "isStatic": True}, {"result": False, "isStatic": True}),
    ("hasMethod", {"id": "lab.Broken", "methodName": "m"}, {"result": False, "isStatic": False}),
    ("hasMethod", {"className": "lab.Pump", "methodName": "create"}, {"result": True, "isStatic": True}),
    ("hasMethod", {"className": "no.such", "methodName": "create", "isStatic": True},
     {"result": False, "isStatic": True}),
    ("hasMethod", {"className": "lab.Pump", "methodName": BYTES}, {"result": False, "isStatic": False}),
    ("hasProperty", {"object": {"variable": "pump"}, "propertyName": "Flow"}, {"result": True}),
    ("hasProperty", {"object": {"variable": "pump"}, "propertyName": "start"}, {"result": False}),
    ("hasProperty", {"object": None, "propertyName": "Flow"}, {"result": False}),
    ("isKCOSClass", {"id": "lab.Broken"}, {"result": True}),
    ("isKCOSClass", {"id": "no.such"}, {"result": False}),
    ("isKCOSClass", {"className": "lab.Broken"}, {"result": False}),
    ("isKCOSClass", {"className": "lab.OldPump"}, {"result": True}),
    ("isKCOSObject", {"value": {"variable": "pump"}}, {"result": True}),
    ("isKCOSObject", {"value": {"variable": "n"}}, {"result": False}),
    ("isKCOSObject", {"value": None}, {"result": False}),
    ("isKCOSNamespace", {"namespaceName": "lab"}, {"result": True}),
    ("isKCOSNamespace", {"namespaceName": "lab.Pump"}, {"result": False}),
    ("isKCOSClassDerivedFrom", {"derived": "lab.Pump", "base": "lab.Device"}, {"result": True}),
    ("isKCOSClassDerivedFrom", {"derived": "lab.Device", "base": "lab.Pump"}, {"result": False}),
    ("isKCOSClassDerivedFrom", {"derived": "no.such", "base": "lab.Pump"}, {"result": False}),
    ("isKCOSClassDerivedFrom", {"derived": {"id": PUMP}, "base": {"id": "core:lab.Device"}}, {"result": True}),
    ("isKCOSClassDerivedFrom", {"derived": {"object": {"variable": "pump"}}, "base": "no.such"}, {"result": False}),
    ("getKCOSMethodsExcludeSet", {}, None),
    ("getVX2KorvalNamespacesExcludeSet", {}, None),
    ("getVX2NamespacesExcludeSet", {}, None),
    ("getNoDotMethodClassesExcludeSet", {}, None),
    ("getAttributesToTreatAsHavingCustomGetters", {}, None),
    ("getClassConstantPropertyNames", {"id": PUMP},
     {"result": True, "names": ["MaxFlow"], "classFlag": True}),
    ("getClassConstantPropertyNames", {"className": "lab.Device", "names": ["kept"], "classFlag": True},
     {"result": False, "names": ["kept"], "classFlag": False}),
    ("getClassPropertyNames", {"id": PUMP},
     {"result": True, "names": ["Flow", "MaxFlow", "Serial", "Serial"], "classFlag": True}),
    ("getClassPropertyNames", {"className": "lab.Pump", "names": [SURROGATE, "Flow"]},
     {"result": True, "names": [SURROGATE, "Flow", "Flow", "MaxFlow", "Serial", "Serial"], "classFlag": True}),
    ("getClassPropertyNames", {"id": "lab.Broken", "classFlag": True},
     {"result": True, "names": ["P"], "classFlag": False}),
    ("getClassPropertyNames", {"className": "lab.Broken", "classFlag": True},
     {"result": False, "names": [], "classFlag": True}),
    ("getClassPropertyNames", {"id": "no.such", "names": ["kept"], "classFlag": True},
     {"result": False, "names": ["kept"], "classFlag": True}),
    ("getClassPropertyNames", {"className": "lab.Nameless"},
     {"result": False, "names": ["First"], "classFlag": False}),
    ("getClassStaticMethodNames", {"id": PUMP, "classFlag": True},
     {"result": True, "names": ["create", "list"], "classFlag": True}),
    ("getClassStaticMethodNames", {"className": "lab.Pump"},
     {"result": True, "names": ["create", "list"], "classFlag": False}),
    ("getClassMethodNames", {"id": "core:lab.Device", "names": ["kept"]},
     {"result": True, "names": ["kept", "reset", "list"], "classFlag": False}),
    ("getClassMethodNames", {"className": "lab.Device"},
     {"result": True, "names": ["reset", "list"], "classFlag": False}),
    ("getClassMethodNames", {"id": "lab.Broken"}, {"result": False, "names": [], "classFlag": False}),
    ("getClassEnumerationNames", {"id": "lab.Mode", "classFlag": True},
     {"result": True, "names": ["Idle", "Running", "Idle"], "classFlag": True}),
    ("getClassEnumerationNames", {"className": "lab.Mode"},
     {"result": True, "names": ["Idle", "Running", "Idle"], "classFlag": False}),
    ("ClassInfo", TOP, {"result": TOP_TREE}),
    ("ClassInfo", {"value": {"variable": "top"}}, {"result": TOP_TREE}),
    ("ClassInfo", {"value": {"variable": "n"}}, {"result": tree("")}),
    ("ClassInfo", {"value": None}, {"result": tree("")}),
    ("ClassInfo", {"value": {"variable": "empty"}}, {"result": tree("lab.Empty")}),
    ("ClassInfo", {"context": "tune", "className": "Pump"},
     {"result": tree("lab.Pump", tree("lab.Device", class_id="core:lab.Device"), class_id=PUMP)}),
    ("ClassInfo", {"value": {"variable": "pump"}},
     {"result": tree(PUMP, tree("lab.Device", class_id="core:lab.Device"))}),
    ("ClassInfo", {"context": "", "className": ""}, {"result": tree("")}),
    ("ClassInfo", {"id": "no.such"}, {"result": tree("no.such")}),
    ("ClassInfo", {"id": {"scope": "tune", "className": "Empty"}}, {"result": tree("lab.Empty")}),
    ("getProperties", {"record": TOP}, {"result": [SHARED, SIZE, LEVEL]}),
    ("getProperties", {"record": TOP, "options": {}}, {"result": [SHARED, SIZE, LEVEL]}),
    ("getProperties", {"record": {"context": "", "className": "rig.Top"}}, {"result": [SHARED, SIZE, LEVEL]}),
    ("getProperties", {"record": {"value": {"variable": "top"}}}, {"result": [SHARED, SIZE, LEVEL]}),
    ("getProperties", {"record": {"value": None}}, {"result": []}),
    ("getProperties", {"record": TOP, "options": {"includeHidden": True}},
     {"result": [SHARED, SHARED, SIZE, LEVEL, INNER]}),
    ("getProperties", {"record": TOP, "options": {"accessorKinds": [1]}}, {"result": [SHARED, LEVEL]}),
    ("getProperties", {"record": TOP, "options": {"accessorKinds": [-7, 2]}}, {"result": []}),
    ("getProperties", {"record": TOP, "options": {"accessLevels": []}}, {"result": []}),
    ("getProperties", {"record": BASE, "options": {"accessingClass": AIDE}}, {"result": [SHARED, prop("Guarded")]}),
    ("getProperties", {"record": BASE, "options": {"accessingClass": None}}, {"result": [SHARED]}),
    ("getProperties", {"record": TOP, "accessLevels": [2]}, {"result": [SIZE, SECRET]}),
    ("getProperties", {"record": TOP, "accessLevels": [2, 2]},
     {"result": [SIZE, SECRET]}),
    ("getProperties", {"record": {"id": "rig.Left"}, "accessLevels": [2, 2]},
     {"result": [prop("Guarded"), prop("Low")]}),
    ("getProperties", {"record": BASE, "accessLevels": [-2**31, 2**31 - 1], "accessingClass": {"id": "rig.Friend"}},
     {"result": [prop("Guarded")]}),
    ("getPropertiesOfSuperclasses", {"record": TOP}, {"result": [SHARED]}),
    ("getPropertiesOfSuperclasses", {"record": TOP, "options": {"includeHidden": True}}, {"result": [SHARED, SHARED]}),
    ("getPropertiesOfSuperclasses", {"record": BASE}, {"result": []}),
    ("getMethods", {"record": TOP}, {"result": []}),
    ("getMethods", {"record": TOP, "options": {"context": "none"}}, {"result": []}),
    ("getMethods", {"record": TOP, "options": {"context": 4}}, {"result": []}),
    ("getMethods", {"record": TOP, "options": {"context": "any"}}, {"result": [RUN, RUN, START, MAKE]}),
    ("getMethods", {"record": TOP, "options": {"context": 1}}, {"result": [RUN, RUN, START, MAKE]}),
    ("getMethods", {"record": TOP, "options": {"context": "before-dot", "access": [2]}}, {"result": [method("secret")]}),
    ("getMethods", {"record": TOP, "options": {"context": "after-dot", "includeOperatorOverloads": True}},
     {"result": [RUN, RUN, START, MAKE, PLUS]}),
    ("getMethods", {"record": BASE, "options": {"context": "any", "includeConstructors": True}},
     {"result": [method("Base", "rig.Base"), RUN, BASE_VENT]}),
    ("getMethods", {"record": TOP, "options": {"context": "any", "includeHidden": True}},
     {"result": [RUN, BASE_VENT, RUN, BASE_VENT, START, MAKE, VENT]}),
    ("getMethods", {"record": BASE, "options": {"context": "any", "accessingClass": AIDE}},
     {"result": [RUN, BASE_VENT, method("guard", "rig.Base")]}),
    ("getMethods", {"record": BASE, "access": [2], "context": "any"}, {"result": [method("low", "rig.Base")]}),
    ("getMethods", {"record": BASE, "access": [], "context": 3, "accessingClass": AIDE},
     {"result": [method("guard", "rig.Base")]}),
    ("getMethods", {"record": BASE, "access": [0], "context": 0, "accessingClass": None}, {"result": []}),
    ("getMethodsOfSuperclasses", {"record": TOP, "options": {"context": "any"}},
     {"result": [RUN, BASE_VENT, RUN, BASE_VENT]}),
    ("getMethodsOfSuperclasses", {"record": TOP}, {"result": []}),
    ("getAttributes", {"record": TOP},
     {"result": {"attributeList1": ["One", "Top"], "attributeList2": ["Two"], "attributeList3": [],
                 "attributeList4": ["Four"]}}),
    ("getAttributes", {"record": BASE, "argument": True},
     {"result": {"attributeList1": ["One", "Uno"], "attributeList2": ["Two"], "attributeList3": [],
                 "attributeList4": ["Four"]}}),
    ("isA", {"record": TOP, "className": "rig.Base"}, {"result": True}),
    ("isA", {"record": BASE, "className": "rig.Top"}, {"result": False}),
    ("isA", {"record": {"id": PUMP}, "className": "lab.Pump"}, {"result": True}),
    ("isA", {"record": {"id": PUMP}, "identity": "lab.Pump"}, {"result": False}),
    ("isA", {"record": {"id": PUMP}, "identity": {"id": "core:lab.Device"}}, {"result": True}),
    ("isA", {"record": {"value": None}, "className": ""}, {"result": True}),
    ("getDefaultAccessibility", {"record": {"value": None}}, {"result": [0]}),
    ("getSuperclasses", {"record": TOP},
     {"result": ["rig.Top", "rig.Left", "rig.Base", "rig.Right", "rig.Base"]}),
    ("castSizeStringToIntegers", {"sizeStrings": ["1", ":", " 12 ", "n"]}, {"result": [1, LARGEST, 12, LARGEST]}),
    ("castSizeStringToIntegers", {"sizeStrings": ["1", "1 2"]}, {"result": []}),
    ("isOperatorOverload", {"name": "plus"}, {"result": True}),
    ("isOperatorOverload", {"name": "start"}, {"result": False}),
    ("isOperatorOverload", {"name": "subsref", "narrow": True}, {"result": True}),
    ("isOperatorOverload", {"name": BYTES, "narrow": True}, {"result": False}),
    ("isClassToCompleteMethodsForBeforeDot", {"classId": "double"}, {"result": False}),
    ("isClassToCompleteMethodsForBeforeDot", {"classId": {"id": "table"}}, {"result": True}),
    ("isClassToCompleteMethodsForAfterDot", {"classId": "table"}, {"result": False}),
    ("isClassToCompleteMethodsForAfterDot", {"classId": ""}, {"result": True}),
    ("PropertyVisitorMutable", {"owner": TOP}, {"result": property_visitor()}),
    ("PropertyVisitorMutable", {"owner": None}, {"result": property_visitor(owner=None)}),
    ("MethodVisitorMutable", {"owner": {"id": PUMP}}, {"result": method_visitor(owner=PUMP)}),
    ("MethodVisitorMutable", {}, {"result": method_visitor(owner=None)}),
    ("visit", {"record": TOP, "property": "Level"}, {"result": None, "visitor": property_visitor(LEVEL)}),
    ("visit", {"record": TOP, "property": "Level", "withInfo": True},
     {"result": None, "visitor": property_visitor(LEVEL)}),
    ("visit", {"record": TOP, "property": "Shared"}, {"result": None, "visitor": property_visitor()}),
    ("visit", {"record": TOP, "property": "Inner"}, {"result": None, "visitor": property_visitor(hidden=[INNER])}),
    ("visit", {"record": TOP, "property": "Inner",
               "options": {"accessLevels": [2, 0], "accessorKinds": [0], "accessingClass": AIDE, "includeHidden": True}},
     {"result": None, "visitor": property_visitor(INNER, levels=[2, 0], kinds=[0], accessing="rig.Aide",
                                                  all_of_them=True)}),
    ("visit", {"record": TOP, "method": "start"}, {"result": None, "visitor": method_visitor()}),
    ("visit", {"record": TOP, "method": "start", "options": {"context": "any"}},
     {"result": None, "visitor": method_visitor(START, context=3)}),
    ("visit", {"record": TOP, "method": "Top", "withInfo": True,
               "options": {"context": "any", "includeConstructors": True, "includeOperatorOverloads": True,
                           "includeHidden": True, "access": [0, 1], "accessingClass": AIDE}},
     {"result": None, "visitor": method_visitor(method("Top"), context=3, constructors=True, operators=True,
                                                all_of_them=True, access=[0, 1], accessing="rig.Aide")}),
    ("visit", {"record": TOP, "method": "vent"}, {"result": None, "visitor": method_visitor(hidden=[VENT])}),
    ("clear", {"record": TOP, "property": "Level", "before": {"accessLevels": [0, 3]}},
     {"result": None, "visitor": property_visitor(levels=[0, 3])}),
    ("clear", {"record": TOP, "property": "Inner", "options": {"accessLevels": [1], "includeHidden": True}},
     {"result": None, "visitor": property_visitor(levels=[1], all_of_them=True)}),
    ("clear", {"record": TOP, "method": "vent", "before": {"context": "after-dot"}},
     {"result": None, "visitor": method_visitor(context=2)}),
    ("clear", {"record": TOP, "method": "vent", "before": {"context": "any"}, "options": {"access": []}},
     {"result": None, "visitor": method_visitor(access=[])}),
    ("hasAccessingClass", {"record": BASE, "property": "Guarded", "options": {"accessingClass": AIDE}}, {"result": True}),
    ("hasAccessingClass", {"record": BASE, "property": "Guarded", "options": {"accessingClass": TOP}}, {"result": False}),
    ("hasAccessingClass", {"record": BASE, "property": "Guarded"}, {"result": False}),
    ("hasAccessingClass", {"record": TOP, "method": "guard", "options": {"accessingClass": AIDE}}, {"result": True}),
    ("hasAccessingClass", {"record": TOP, "method": "start", "options": {"accessingClass": AIDE}}, {"result": False}),
    ("callFunctionOnObject", {"object": {"variable": "tool"}, "functionName": "fieldnames", "names": ["kept"]},
     {"result": True, "names": ["kept", "Tip", "Haft"]}),
    ("callFunctionOnObject", {"object": {"variable": "n"}, "functionName": "gone"}, {"result": False, "names": []}),
    ("getObjectPropertyNames", {"object": {"variable": "tool"}}, {"result": None, "names": ["Age", "Kind"]}),
    ("isNoDotMethodClass", {"value": {"variable": "tool"}}, {"result": False}),
    ("isObjectOrIsOpaque", {"value": {"variable": "tool"}}, {"result": True}),
    ("isObjectOrIsOpaque", {"value": {"variable": "far"}}, {"result": True}),
    ("isObjectOrIsOpaque", {"value": {"variable": "n"}}, {"result": False}),
    ("getOpaqueObjectProperties", {"value": {"variable": "far"}}, {"result": None, "names": ["x", "y"]}),
    ("getOpaqueObjectMethods", {"value": {"variable": "far"}, "names": ["kept"]},
     {"result": None, "names": ["kept", "go", "plus"]}),
    ("getMethodsForWSVariable", {"name": "far", "value": {"variable": "far"}}, {"result": ["go"]}),
    ("getMethodsForWSVariable", {"name": "cut", "value": {"variable": "tool"}}, {"result": ["fieldnames"]}),
    ("getNamespaceFunctionNames", {"ns": "kit"}, {"result": True, "names": ["clean"]}),
    ("getNamespaceFunctionNames", {"ns": "gone", "names": ["kept"]}, {"result": False, "names": ["kept"]}),
    ("getNamespaceClassNames", {"ns": "kit.inner", "names": ["kept"]}, {"result": True, "names": ["kept", "Bit"]}),
    ("getNamespaceClassNames", {"ns": "idle.space", "names": ["kept"]}, {"result": False, "names": ["kept"]}),
    ("getNamespaceNamespaceNames", {"ns": "kit", "names": ["kept"]}, {"result": True, "names": ["kept", "inner"]}),
    ("getNamespaceNamespaceNames", {"ns": "kit.inner"}, {"result": False, "names": []}),
    ("getKCOSAllNamespaces", {},
     {"result": {"cell": ["idle", "idle.space", "kit", "kit.inner", "lab", "rig"], "size": [6, 1]}}),
    ("getArgumentBlockMetadata", {"functionReference": "", "functionName": "kit.clean"},
     {"result": {"inputArguments": {"struct": {"name": "dirt", "class": "double", "size": [1, "NaN"],
                                               "validators": {"cell": [], "size": [0, 0]},
                                               "values": {"cell": [], "size": [0, 0]}, "kind": "positional"}},
                 "outputArguments": None, "flags": 1}}),
    ("IsPKXPackage", {"name": "signal"}, {"result": True}),
    ("IsPKXPackage", {"name": "gone"}, {"result": False}),
    ("getPackageStrings", {"package": "signal", "names": ["kept"]},
     {"result": True, "names": ["kept", "Wave", "smooth"]}),
    ("EvalcExpSuccessful", {"expression": "n + 1", "nlhs": 1}, {"result": True, "plhs": [4]}),
    ("EvalcExpSuccessful", {"expression": "disp(1)"}, {"result": True, "plhs": []}),
    ("codeFailure", {}, {"result": None}),
    ("EvalcExpSuccessful", {"expression": "gone", "nlhs": 1}, {"result": False, "plhs": [None]}),
    ("isKCOSClass", {"className": "gone"}, {"result": False}),
    ("codeFailure", {}, {"result": {"id": "KORVAL:code:UndefinedName",
                                    "message": '"gone" is no variable, function, class or namespace',
                                    "source": "expression", "line": 1, "column": 1}}),
    ("EvalcExpSuccessful", {"expression": "m = 8; m", "nlhs": 1, "flag": True}, {"result": True, "plhs": [8]}),
    ("GetValueFromCurrentWorkspace", {"expression": "s.a.b"}, {"result": 7}),
    ("GetValueFromCurrentWorkspace", {"expression": "tool.Age"}, {"result": 42}),
    ("GetValueFromCurrentWorkspace", {"expression": "pump"}, {"result": {"object": "lab.Pump"}}),
    ("GetValueFromCurrentWorkspace", {"expression": "gone"}, {"result": None}),
    ("makeSharedPtr", {"value": {"variable": "holes"}}, {"result": {"cell": [None, 1]}}),
    ("makeSharedPtr", {"value": None}, {"result": None}),
    ("getSharedProperty", {"object": {"variable": "tool"}, "name": "Kind"}, {"result": "saw"}),
    ("getSharedProperty", {"object": {"variable": "tool"}, "name": "Kind", "index": 1}, {"result": None}),
    ("getSharedProperty", {"object": {"variable": "tool"}, "name": "Gone", "index": 0}, {"result": None}),
    ("getStringsFromKxarray", {"value": {"variable": "texts"}, "strings": ["kept"]},
     {"result": True, "strings": ["kept", "one", "two"]}),
    ("getStringsFromKxarray", {"value": {"variable": "holes"}}, {"result": False, "strings": []}),
    ("getStringsFromKxarray", {"value": None}, {"result": False, "strings": []}),
    ("getSizeFromKxArray", {"value": {"variable": "texts"}}, {"result": [1, 2]}),
    ("getSizeFromKxArray", {"value": None}, {"result": []}),
    ("getStructFieldNames", {"value": {"variable": "s"}, "names": ["kept"]}, {"result": None, "names": ["kept", "a", "t"]}),
    ("getStructFieldNames", {"value": {"variable": "n"}}, {"result": None, "names": []}),
    ("GetClassPrecedence", {"classA": "kit.Tool", "classB": "kit.inner.Bit"}, {"result": 2**32 - 1}),
    ("GetClassPrecedence", {"classA": "kit.inner.Bit", "classB": "kit.Tool"}, {"result": 1}),
    ("GetClassPrecedence", {"classA": "kit.Tool", "classB": "lab.Pump"}, {"result": 0}),
    ("IsJavaFunction", {"name": "far.Away.reach"}, {"result": True}),
    ("IsJavaFunction", {"name": "far.Away.gone"}, {"result": False}),
    ("getWhatList", {"folder": "nowhere", "kind": ".k", "names": ["kept"]}, {"result": None, "names": ["kept"]}),
    ("getBuiltinFunctionNames", {}, {"result": ["numel", "sum"]}),
    ("AutoPushingExecutionFrame", {}, {"result": None, "depth": [0, 1, 0]}),
    ("FunctionExecutionFrame", {"function": "tune"}, {"result": None, "depth": [0, 1, 0]}),
    ("accept", {"function": "tune"}, {"result": None, "reachedFunction": True, "depth": [0, 1, 0]}),
]

# Some texts of each table, and some that it must not have. What the tables hold exactly is not tested here.
TABLES = {
    "getKCOSMethodsExcludeSet": (["plus", "subsref", "subsindex"], ["start"]),
    "getVX2KorvalNamespacesExcludeSet": (["ui"], ["korval.ui"]),
    "getVX2NamespacesExcludeSet": (["korval.ui"], ["ui"]),
    "getNoDotMethodClassesExcludeSet": (["table", "datetime"], ["lab.Pump"]),
    "getAttributesToTreatAsHavingCustomGetters": (["QRDGetSet"], ["Flow"]),
}

# (line, code, the argument that is named)
ERRORS = [
    (b"", "query.not-json", None),
    (b"{", "query.not-json", None),
    (b"\xc3\xa9", "query.not-json", None),
    (b'{"op": "GetDebuggerFocus"} {}', "query.not-json", None),
    (b'{"op": "\\ud800"}', "query.not-json", None),
    (b'{"op": "\xff"}', "query.not-utf8", None),
    (b"[" * 100000, "query.not-json", None),
    (b"[" * 100000 + b"]" * 100000, "query.not-object", None),
    (b"3", "query.not-object", None),
    (b'["GetDebuggerFocus"]', "query.not-object", None),
    (b'{"op": "GetDebuggerFocus", "op": "GetDebuggerFocus"}', "query.repeated-key", "op"),
    (b'{"op": "isKCOSClass", "id": {"id": "a"}, "op": "isKCOSClass"}', "query.repeated-key", "op"),
    (b'{"op": "isKCOSClass", "id": {"id": "a", "id": "b"}}', "query.repeated-key", "id"),
    (b'{"padding": "' + b"x" * (16 << 20) + b'"}', "query.line-too-long", None),
    ({}, "query.missing-argument", "op"),
    ({"op": 3}, "query.wrong-type", "op"),
    ({"op": "getkcosclass"}, "query.unknown-op", "op"),
    ({"op": ""}, "query.unknown-op", "op"),
    ({"op": "GetDebuggerFocus", "tag": []}, "query.wrong-type", "tag"),
    ({"op": "GetDebuggerFocus", "tag": 1.5}, "query.wrong-type", "tag"),
    ({"op": "GetDebuggerFocus", "trace": 1}, "query.wrong-type", "trace"),
    ({"op": "GetDebuggerFocus", "id": "a"}, "query.unknown-argument", "id"),
    ({"op": "isKCOSClass"}, "query.missing-argument", "className"),
    ({"op": "isKCOSClass", "id": "a", "className": "a"}, "query.unknown-argument", "className"),
    ({"op": "isKCOSClass", "className": 3}, "query.wrong-type", "className"),
    ({"op": "isKCOSClass", "className": None}, "query.wrong-type", "className"),
    ({"op": "isKCOSClass", "className": {"utf16": [65536]}}, "query.wrong-type", "className"),
    ({"op": "isKCOSClass", "className": {"utf16": [-1]}}, "query.wrong-type", "className"),
    ({"op": "isKCOSClass", "className": {"utf16": [65.5]}}, "query.wrong-type", "className"),
    ({"op": "isKCOSClass", "className": {"utf16": [], "more": 1}}, "query.wrong-type", "className"),
    ({"op": "isKCOSClass", "className": {"bytes": [65]}}, "query.wrong-type", "className"),
    ({"op": "isKCOSClass", "id": {"bytes": [256]}}, "query.missing-argument", "id.context"),
    ({"op": "isKCOSClass", "id": 3}, "query.wrong-type", "id"),
    ({"op": "isKCOSClass", "id": {"id": "a", "className": "b"}}, "query.unknown-argument", "id.className"),
    ({"op": "isKCOSClass", "id": {"scope": "tune"}}, "query.missing-argument", "id.className"),
    ({"op": "isKCOSClass", "id": {"object": {"variable": "gone"}}}, "query.unknown-variable", "id.object"),
    ({"op": "isKCOSObject", "value": "pump"}, "query.wrong-type", "value"),
    ({"op": "isKCOSObject", "value": {"variable": 3}}, "query.wrong-type", "value.variable"),
    ({"op": "isKCOSObject", "value": {"variable": "pump", "index": 1}}, "query.unknown-argument", "value.index"),
    ({"op": "isKCOSObject", "value": {"variable": "gone"}}, "query.unknown-variable", "value"),
    ({"op": "getClassName", "value": None}, "query.wrong-type", "value"),
    ({"op": "ResolvedClassID", "scope": "gone", "className": "a"}, "query.unknown-function", "scope"),
    ({"op": "ResolvedClassID", "scope": 1, "className": "a"}, "query.wrong-type", "scope"),
    ({"op": "ResolvedClassID", "object": None, "className": "a"}, "query.unknown-argument", "className"),
    ({"op": "hasMethod", "object": None, "methodName": "a", "isStatic": True}, "query.unknown-argument", "isStatic"),
    ({"op": "hasMethod", "id": "a", "methodName": {"utf16": [65]}}, "query.wrong-type", "methodName"),
    ({"op": "isKCOSClassDerivedFrom", "derived": "a", "base": {"id": "b"}}, "query.wrong-type", "base"),
    ({"op": "isAlreadyResolved", "name": "a", "narrow": "yes"}, "query.wrong-type", "narrow"),
    ({"op": "isAlreadyResolved", "name": {"bytes": [65]}}, "query.wrong-type", "name"),
    ({"op": "getClassMethodNames", "id": "a", "names": "kept"}, "query.wrong-type", "names"),
    ({"op": "getClassMethodNames", "id": "a", "names": [1]}, "query.wrong-type", "names"),
    ({"op": "getClassMethodNames", "id": "a", "classFlag": None}, "query.wrong-type", "classFlag"),
    ({"op": "ClassInfo"}, "query.missing-argument", "id"),
    ({"op": "ClassInfo", "className": "a"}, "query.missing-argument", "context"),
    ({"op": "ClassInfo", "value": {"variable": "gone"}}, "query.unknown-variable", "value"),
    ({"op": "ClassInfo", "value": None, "id": "a"}, "query.unknown-argument", "id"),
    ({"op": "getProperties"}, "query.missing-argument", "record"),
    ({"op": "getProperties", "record": "rig.Top"}, "query.wrong-type", "record"),
    ({"op": "getProperties", "record": None}, "query.wrong-type", "record"),
    ({"op": "getProperties", "record": {}}, "query.missing-argument", "record.id"),
    ({"op": "getProperties", "record": {"id": "a", "more": 1}}, "query.unknown-argument", "record.more"),
    ({"op": "getProperties", "record": TOP, "options": []}, "query.wrong-type", "options"),
    ({"op": "getProperties", "record": TOP, "options": {"access": [0]}}, "query.unknown-argument", "options.access"),
    ({"op": "getProperties", "record": TOP, "accessLevels": [0], "options": {}}, "query.unknown-argument", "options"),
    ({"op": "getProperties", "record": TOP, "accessLevels": 0}, "query.wrong-type", "accessLevels"),
    ({"op": "getProperties", "record": TOP, "accessLevels": [2**31]}, "query.wrong-type", "accessLevels"),
    ({"op": "getProperties", "record": TOP, "accessLevels": [-2**31 - 1]}, "query.wrong-type", "accessLevels"),
    ({"op": "getProperties", "record": TOP, "accessLevels": [2**64 - 1]}, "query.wrong-type", "accessLevels"),
    ({"op": "getProperties", "record": TOP, "accessLevels": [0.0]}, "query.wrong-type", "accessLevels"),
    ({"op": "getProperties", "record": TOP, "options": {"accessorKinds": ["read"]}}, "query.wrong-type",
     "options.accessorKinds"),
    ({"op": "getProperties", "record": TOP, "options": {"includeHidden": 1}}, "query.wrong-type", "options.includeHidden"),
    ({"op": "getProperties", "record": TOP, "options": {"accessingClass": "a"}}, "query.wrong-type",
     "options.accessingClass"),
    ({"op": "getProperties", "record": TOP, "options": {"accessingClass": {"id": 3}}}, "query.wrong-type",
     "options.accessingClass.id"),
    ({"op": "getMethods", "record": TOP, "access": [0]}, "query.missing-argument", "context"),
    ({"op": "getMethods", "record": TOP, "options": {"context": "after"}}, "query.wrong-type", "options.context"),
    ({"op": "getMethods", "record": TOP, "options": {"context": True}}, "query.wrong-type", "options.context"),
    ({"op": "getMethods", "record": TOP, "options": {"accessLevels": [0]}}, "query.unknown-argument",
     "options.accessLevels"),
    ({"op": "getAttributes", "record": TOP, "argument": 1}, "query.wrong-type", "argument"),
    ({"op": "isA", "record": TOP}, "query.missing-argument", "className"),
    ({"op": "isA", "record": TOP, "className": "a", "identity": "a"}, "query.unknown-argument", "className"),
    ({"op": "castSizeStringToIntegers"}, "query.missing-argument", "sizeStrings"),
    ({"op": "castSizeStringToIntegers", "sizeStrings": [1]}, "query.wrong-type", "sizeStrings"),
    ({"op": "visit", "record": TOP}, "query.missing-argument", "property"),
    ({"op": "visit", "record": TOP, "property": "gone"}, "query.unknown-member", "property"),
    ({"op": "visit", "record": TOP, "property": "start"}, "query.unknown-member", "property"),
    ({"op": "visit", "record": TOP, "property": ""}, "query.unknown-member", "property"),
    ({"op": "visit", "record": TOP, "method": "Level"}, "query.unknown-member", "method"),
    ({"op": "visit", "record": {"id": "no.such"}, "method": "start"}, "query.unknown-member", "method"),
    ({"op": "visit", "record": {"value": None}, "property": "Level"}, "query.unknown-member", "property"),
    ({"op": "visit", "record": TOP, "method": "start", "property": "Level"}, "query.unknown-argument", "property"),
    ({"op": "clear", "record": TOP, "property": "Level", "withInfo": True}, "query.unknown-argument", "withInfo"),
    ({"op": "PropertyVisitorMutable", "owner": "rig.Top"}, "query.wrong-type", "owner"),
    ({"op": "EvalcExpSuccessful", "expression": "1", "nlhs": -1}, "query.wrong-type", "nlhs"),
    ({"op": "EvalcExpSuccessful", "expression": "1", "nlhs": 1001}, "query.wrong-type", "nlhs"),
    ({"op": "getSharedProperty", "object": None, "name": "a"}, "query.wrong-type", "object"),
    ({"op": "getStructFieldNames", "value": None}, "query.wrong-type", "value"),
    ({"op": "accept", "function": "gone"}, "query.unknown-function", "function"),
    ({"op": "FunctionExecutionFrame", "function": "tune", "more": 1}, "query.unknown-argument", "more"),
    ({"protocol": 1}, "query.protocol", "protocol"),
]


def line_of(request):
    return request if isinstance(request, bytes) else json.dumps(request).encode()


class QueryTest(CommandTest):
    def exchange(self, requests, *options, snapshot=None):
        """The answers to the requests (objects, or bytes as they stand), one each."""
        stdin = b"".join(line_of(request) + b"\n" for request in requests)
        done = run("query", "--snapshot", snapshot or self.session, *options, stdin=stdin)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        opening, *answers = [json.loads(line) for line in done.stdout.decode().splitlines()]
        self.assertEqual(opening.keys(), {"protocol", "version"})
        self.assertEqual(opening["protocol"], 1)
        self.assertEqual(len(answers), len(requests))
        return answers

    def test_a_request_has_a_time_limit(self):
        endless = {"op": "EvalcExpSuccessful", "expression": "x = 0; while 1 > 0, x = x + 1; end", "nlhs": 0}
        first, then = self.exchange([endless, {"op": "isKCOSClass", "className": "gone"}], "--timeout", "20")
        self.assertEqual(first["status"], "timed-out")
        self.assertNotIn("status", then)
        for command in ("query", "complete", "explain"):
            self.assertIn("10000 by default", " ".join(run(command, "--help").stdout.decode().split()))

    def test_every_op_in_every_form(self):
        answers = self.exchange([{"op": op, **arguments} for op, arguments, _ in ANSWERS])
        for (op, arguments, expected), answer in zip(ANSWERS, answers):
            if expected is not None:
                with self.subTest(op=op, arguments=arguments):
                    # With what code failed is told besides.
                    failed = answer.pop("failed", {}).get("id")
                    ran = op in ("callFunctionOnObject", "EvalcExpSuccessful")
                    self.assertEqual(failed, "KORVAL:code:UndefinedName" if ran and "gone" in arguments.values() else None)
                    self.assertEqual(answer, {"op": op, **expected})

    def test_tables(self):
        for answer, (op, (inside, outside)) in zip(self.exchange([{"op": op} for op in TABLES]), TABLES.items()):
            with self.subTest(op=op):
                self.assertEqual(answer.keys(), {"op", "result"})
                self.assertEqual(len(set(answer["result"])), len(answer["result"]))
                self.assertLessEqual(set(inside), set(answer["result"]))
                self.assertFalse(set(outside) & set(answer["result"]))

    def test_ops_are_the_exported_operations(self):
        lines = (SOURCE / "packaging/operations.txt").read_text(encoding="utf-8").splitlines()
        exported = {line.rpartition("::")[2] for line in lines if line and not line.startswith("#")}
        done = run("query", "--ops")
        self.assertEqual(done.returncode, 0)
        ops = exported | {"codeFailure"}
        self.assertEqual(sorted(done.stdout.decode().split()), sorted(ops))
        self.assertEqual({op for op, _, _ in ANSWERS}, ops)

    def test_errors_name_their_code_and_the_next_line_is_served(self):
        good = {"op": "isKCOSClass", "id": PUMP}
        requests = [good] + [request for line, _, _ in ERRORS for request in (line, good)]
        answers = self.exchange(requests)
        self.assertEqual(answers[::2], [{"op": "isKCOSClass", "result": True}] * (len(ERRORS) + 1))
        for (line, code, argument), answer in zip(ERRORS, answers[1::2]):
            with self.subTest(line=str(line)[:100]):
                self.assertEqual(answer["error"]["code"], code)
                self.assertEqual(answer["error"].get("argument"), argument)
                self.assertNotEqual(answer["error"]["message"], "")
                self.assertFalse({"result", "names", "exception"} & answer.keys())

    def test_exceptions_of_a_walk_pass_with_their_fields(self):
        requests = [{"op": "getClassPropertyNames", "id": "lab.Nameless", "classFlag": True}]
        (answer,) = self.exchange(requests)
        exception = answer.pop("exception")
        self.assertEqual(answer, {"op": "getClassPropertyNames", "names": ["First"], "classFlag": False})
        self.assertEqual((exception.keys(), exception["type"]), ({"type", "what"}, "std::logic_error"))
        self.assertNotEqual(exception["what"], "")

    def test_tags_come_back_also_with_errors(self):
        tags = ["gr\u00fcn", "", 7, -1, 2**64 - 1]
        answers = self.exchange([{"op": "GetDebuggerFocus", "tag": tag} for tag in tags]
                                + [{"op": "no", "tag": tag} for tag in tags])
        self.assertEqual([answer["tag"] for answer in answers], tags + tags)
        self.assertNotIn("tag", self.exchange([{"op": "GetDebuggerFocus"}])[0])

    def test_refused_code_is_told(self):
        evaluation = {"op": "EvalcExpSuccessful", "expression": "n", "nlhs": 1}
        fallback = {"op": "getObjectPropertyNames", "object": {"variable": "tool"}}
        silent = {"op": "getSizeFromKxArray", "value": {"variable": "n"}}
        requests = [evaluation, fallback, silent, {"op": "GetValueFromCurrentWorkspace", "expression": "s.a.b"}]
        refused, poorer, answered, walked = self.exchange(requests, "--no-code")
        self.assertEqual(refused["exception"]["messageId"], "KORVAL:host:CodeRefused")
        self.assertEqual((refused["plhs"], len(refused["refused"])), ([None], 1))
        self.assertEqual((poorer["names"], len(poorer["refused"])), (["Age", "Kind"], 1))
        self.assertEqual((answered["result"], walked["result"]), ([1, 1], 7))
        for answer in (answered, walked, *self.exchange(requests)):
            self.assertNotIn("refused", answer)

    def test_folders_of_the_search_path(self):
        (self.folder / "path/tools").mkdir(parents=True)
        for name in ("one.k", "two.k", "fast.kexa64", "notes.txt"):
            (self.folder / "path/tools" / name).touch()
        (self.folder / "path/tools/@Saw").mkdir()
        file = self.snapshot({"format": 1, "path": [{"folder": "path/tools"}]}, "path.json")
        kinds = {".k": ["one.k", "two.k"], "classes": ["Saw"], ".kex": ["fast.kexa64"]}
        answers = self.exchange([{"op": "getWhatList", "folder": "tools", "kind": kind} for kind in kinds], snapshot=file)
        for answer, names in zip(answers, kinds.values()):
            self.assertEqual(sorted(answer["names"]), names)

    def test_the_first_line_may_name_the_protocol(self):
        good, focus = {"op": "isKCOSClass", "id": PUMP}, {"op": "isKCOSClass", "result": True}
        self.assertEqual(self.exchange([{"protocol": 1, "tag": 1}, good]), [{"tag": 1, "protocol": 1}, focus])
        for other in (2, 0, "1", None, 1.5):
            answer, following = self.exchange([{"protocol": other}, good])
            self.assertEqual((answer["error"]["code"], following), ("query.protocol", focus), other)
        answer, _ = self.exchange([{"protocol": 1, **good}, good])
        self.assertEqual(answer["error"]["code"], "query.unknown-argument")
        for before in (b"", {"tag": []}):
            answer = self.exchange([before, {"protocol": 1}])[1]
            self.assertEqual(answer["error"]["code"], "query.protocol", before)

    def test_the_trace_holds_what_the_library_asked_and_nothing_else(self):
        def calls(operation, argument):
            return {"calls": [{"operation": operation, "arguments": argument}], "ranKorvalCode": False}
        cases = [
            ({"op": "isAlreadyResolved", "name": "a", "narrow": True},
             {"result": False, **calls("kcos::nameresolution::isPackageQualifiedName", '"a"')}),
            ({"op": "getCOSClass", "id": {"scope": "tune", "className": "Pump"}},
             {"result": PUMP, **calls("kcos::COSClass::getClass", f'"{PUMP}"')}),
            ({"op": "getConstructorName", "className": "a.b"},
             {"result": "b", "calls": [], "ranKorvalCode": False}),
            ({"op": "getSuperclasses", "record": TOP},
             {"result": ["rig.Top", "rig.Left", "rig.Base", "rig.Right", "rig.Base"], "calls": [],
              "ranKorvalCode": False}),
            ({"op": "getMethods", "record": TOP}, {"result": [], "calls": [], "ranKorvalCode": False}),
            ({"op": "hasAccessingClass", "record": BASE, "method": "run"},
             {"result": False, "calls": [], "ranKorvalCode": False}),
            ({"op": "fromLegacyString", "name": "", "narrow": True},
             {"exception": {"type": BAD_NAME, "className": ""}, **calls("kcos::COSClass::getClass", "null")}),
        ]
        for request, expected in cases:
            expected = {"op": request["op"], **expected}
            with self.subTest(request=request):
                self.assertEqual(self.exchange([request], "--trace"), [expected])
                self.assertEqual(self.exchange([{**request, "trace": True}]), [expected])
                self.assertFalse({"calls", "ranKorvalCode"} & self.exchange([request])[0].keys())
        walked = self.exchange([{"op": "hasMethod", "id": PUMP, "methodName": "start"}], "--trace")[0]["calls"]
        self.assertEqual([call["operation"] for call in walked].count("kcos::COSClass::findMethods"), 2)

    def test_the_end_of_the_input(self):
        for stdin, answers in ((b"", 0), (b'{"op": "GetDebuggerFocus"}', 1), (b"\r\n", 1), (b"{}\n{}", 2)):
            done = run("query", "--snapshot", self.session, stdin=stdin)
            self.assertEqual((done.returncode, done.stdout.count(b"\n")), (0, 1 + answers), stdin)
        done = run("query", "--snapshot", self.session, stdin=b'{"op": "isKCOSClass", "id": "lab.Mode"}\r')
        self.assertEqual(json.loads(done.stdout.splitlines()[1]), {"op": "isKCOSClass", "result": True})

    def test_answers_come_line_by_line(self):
        with self.start() as process:
            for _ in range(3):
                process.stdin.write(b'{"op": "isKCOSClass", "id": "lab.Mode"}\n')
                process.stdin.flush()
                self.assertEqual(json.loads(process.stdout.readline()), {"op": "isKCOSClass", "result": True})
            process.stdin.close()
            self.assertEqual(process.wait(HANG), 0)

    def start(self, *options, snapshot=None):
        """A running query that has opened its stream; one that hangs is ended, so that no test waits for ever."""
        process = subprocess.Popen([COMMAND, "query", "--snapshot", snapshot or self.session, *options],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=environment())
        end = threading.Timer(HANG, process.kill)
        end.start()
        self.addCleanup(end.cancel)
        self.assertEqual(json.loads(process.stdout.readline())["protocol"], 1)
        return process

    def test_an_interrupt_while_waiting_ends_the_command(self):
        with self.start() as process:
            process.send_signal(signal.SIGINT)
            self.assertEqual((process.wait(HANG), process.stdout.read()), (130, b""))

    def test_an_interrupt_during_a_request_is_answered_before_the_command_ends(self):
        many = [f"method{number}" for number in range(50000)]
        big = self.snapshot({"format": 1, "classes": [{"name": "Big", "methods": many}]}, "big.json")
        interrupted = 0
        for attempt, pause in enumerate(pauses()):
            with self.start("--trace", snapshot=big) as process:
                request = {"op": "getClassMethodNames", "id": "Big", "tag": attempt}
                process.stdin.write(line_of(request) + b"\n" + line_of({"op": "GetDebuggerFocus"}) + b"\n")
                process.stdin.flush()
                time.sleep(pause)
                process.send_signal(signal.SIGINT)
                answers = [json.loads(line) for line in process.stdout]
                self.assertEqual(process.wait(HANG), 130)
            self.assertLessEqual(len(answers), 2)
            if answers and answers[0].get("status") == "interrupted":
                self.assertEqual((len(answers), answers[0]["tag"]), (1, attempt))
                interrupted += 1
                if interrupted == 2:
                    return
        self.fail("no request was interrupted")

    def test_bad_snapshots(self):
        self.check_bad_snapshots("query", stdin=b'{"op": "GetDebuggerFocus"}\n')

    def test_usage(self):
        self.check_usage([], ["query"], ["query", "--snapshot"], ["query", "--snapshot", self.session, "more"],
                         ["query", "--trace"], ["query", "--unknown"], ["unknown"])
        for arguments in (["--help"], ["query", "--help"], ["--version"]):
            done = run(*arguments)
            self.assertEqual((done.returncode, done.stderr), (0, b""), arguments)
            self.assertIn(b"contextdata" if "--version" in arguments else b"--help", done.stdout)

    def test_an_answer_that_cannot_be_written(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([COMMAND, "query", "--snapshot", self.session], stdin=subprocess.DEVNULL,
                                  stdout=full, stderr=subprocess.PIPE, timeout=HANG, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"[command.output]", done.stderr)

    def test_the_session_in_the_documentation(self):
        page = (SOURCE / "docs/query.md").read_text(encoding="utf-8")
        lines = page.split("```text\n")[1].split("```")[0].splitlines()
        requests = [line[2:].encode() for line in lines if line.startswith("> ")]
        self.assertGreater(len(requests), 3)
        done = run("query", "--snapshot", str(SOURCE / "examples/lab.json"), stdin=b"\n".join(requests))
        self.assertEqual(done.stdout.decode().splitlines(), [line[2:] for line in lines if line.startswith("< ")])

    def test_the_documentation_names_every_op_and_every_code(self):
        page = (SOURCE / "docs/query.md").read_text(encoding="utf-8")
        for name in {op for op, _, _ in ANSWERS} | {code for _, code, _ in ERRORS}:
            self.assertIn(f"`{name}`", page)


if __name__ == "__main__":
    unittest.main()
