#include <contextdata/KCOSIntrospection.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

void getCOSClass(Question& question) {
  const Arguments& arguments = question.arguments;
  if (arguments.has("id")) {
    const auto id = arguments.identifier("id");
    question.ask([&] { return KCOSIntrospection::getCOSClass(id); });
  } else if (arguments.has("object")) {
    const auto object = arguments.value("object");
    question.ask([&] { return KCOSIntrospection::getCOSClass(object.get()); });
  } else {
    const std::u16string className = arguments.text("className");
    question.ask([&] { return KCOSIntrospection::getCOSClass(className); });
  }
}

void getClassName(Question& question) {
  const auto value = question.arguments.existingValue("value");
  question.ask([&] { return KCOSIntrospection::getClassName(value.get()); });
}

void getConstructorName(Question& question) {
  const std::u16string className = question.arguments.text("className");
  question.ask([&] { return KCOSIntrospection::getConstructorName(className); });
}

void getNamespaceInterface(Question& question) {
  const std::u16string name = question.arguments.text("namespaceName");
  question.ask([&] { return KCOSIntrospection::getNamespaceInterface(name); });
}

void hasMethod(Question& question) {
  const Arguments& arguments = question.arguments;
  const std::string methodName = arguments.narrowText("methodName");
  if (arguments.has("object")) {
    const auto object = arguments.value("object");
    question.ask([&] { return KCOSIntrospection::hasMethod(object.get(), methodName); });
    return;
  }
  bool isStatic = arguments.flag("isStatic");
  if (arguments.has("id")) {
    const auto id = arguments.identifier("id");
    question.ask([&] { return KCOSIntrospection::hasMethod(id, methodName, isStatic); });
  } else {
    const std::u16string className = arguments.text("className");
    question.ask([&] { return KCOSIntrospection::hasMethod(className, methodName, isStatic); });
  }
  question.tell("isStatic", isStatic);
}

void hasProperty(Question& question) {
  const auto object = question.arguments.value("object");
  const std::string propertyName = question.arguments.narrowText("propertyName");
  question.ask([&] { return KCOSIntrospection::hasProperty(object.get(), propertyName); });
}

void isKCOSClass(Question& question) {
  if (question.arguments.has("id")) {
    const auto id = question.arguments.identifier("id");
    question.ask([&] { return KCOSIntrospection::isKCOSClass(id); });
  } else {
    const std::u16string className = question.arguments.text("className");
    question.ask([&] { return KCOSIntrospection::isKCOSClass(className); });
  }
}

void isKCOSObject(Question& question) {
  const auto value = question.arguments.value("value");
  question.ask([&] { return KCOSIntrospection::isKCOSObject(value.get()); });
}

void isKCOSNamespace(Question& question) {
  const std::u16string name = question.arguments.text("namespaceName");
  question.ask([&] { return KCOSIntrospection::isKCOSNamespace(name); });
}

void isKCOSClassDerivedFrom(Question& question) {
  const Arguments& arguments = question.arguments;
  if (arguments.hasIdentifier("derived")) {
    const auto derived = arguments.identifier("derived");
    const auto base = arguments.identifier("base");
    question.ask([&] { return KCOSIntrospection::isKCOSClassDerivedFrom(derived, base); });
  } else {
    const std::u16string derived = arguments.text("derived");
    const std::u16string base = arguments.text("base");
    question.ask([&] { return KCOSIntrospection::isKCOSClassDerivedFrom(derived, base); });
  }
}

}  // namespace

std::vector<Operation> gatewayOperations() {
  return {{"getCOSClass", getCOSClass},
          {"getClassName", getClassName},
          {"getConstructorName", getConstructorName},
          {"getNamespaceInterface", getNamespaceInterface},
          {"hasMethod", hasMethod},
          {"hasProperty", hasProperty},
          {"isKCOSClass", isKCOSClass},
          {"isKCOSObject", isKCOSObject},
          {"isKCOSNamespace", isKCOSNamespace},
          {"isKCOSClassDerivedFrom", isKCOSClassDerivedFrom}};
}

}  // namespace tools::query
