#include "embedded/language/Members.h"

#include <algorithm>

#include "embedded/language/Convert.h"
#include "embedded/model/Names.h"

namespace embedded {

namespace {

constexpr kcos::MemberAccess Public{0}, Protected{1}, Immutable{3}, Constant{5};

[[noreturn]] void failMember(const std::string& owner, const std::string& name) {
  failCode("KORVAL:code:NoSuchMember", "\"" + owner + "\" has no \"" + name + "\"");
}

[[noreturn]] void failAccess(const std::string& what, const std::string& name) {
  failCode("KORVAL:code:AccessDenied", what + " \"" + name + "\" is not allowed here");
}

template <class Named>
const ValuePtr* findNamed(const std::vector<std::pair<Named, ValuePtr>>& pairs, const std::string& name) {
  const auto found = std::ranges::find(pairs, name, &std::pair<Named, ValuePtr>::first);
  return found == pairs.end() ? nullptr : &found->second;
}

const Property* propertyOf(const Class& oneClass, const std::string& name) {
  return oneClass.property(alreadyInterned(name));
}

ValuePtr declaredValue(const PropertyContent& property) {
  return property.value == nullptr ? newEmpty() : makeValue(*property.value, session().classes);
}

ValuePtr orEmpty(const ValuePtr& value) { return value == nullptr ? newEmpty() : value; }

ValuePtr readStructure(const Structures& structures, const std::string& name) {
  const auto field = std::ranges::find(structures.fields, name);
  if (field == structures.fields.end()) failMember(structures.className, name);
  return orEmpty(structures.values.at(static_cast<std::size_t>(field - structures.fields.begin())));
}

ValuePtr readObject(Session& session, const ValuePtr& object, const std::string& name,
                    const Routine* asking) {
  const Object& content = *object->as<Object>();
  const ValuePtr* stored = findNamed(content.properties, name);
  const Class* oneClass = classOf(session, *object);
  if (oneClass == nullptr)
    return stored != nullptr ? *stored : (failMember(object->className(), name), nullptr);
  const Property* property = propertyOf(*oneClass, name);
  if (property == nullptr) failMember(object->className(), name);
  const PropertyContent& declared = property->content();
  if (!mayUse(declared.get, *property->definingClass(), asking)) failAccess("Reading", name);
  if (declared.getter != nullptr && declared.getter.get() != asking) {
    const Values answer = callRoutine(session, *declared.getter, nullptr, {object}, 1);
    if (answer.empty()) failCode("KORVAL:code:NoValue", "The get method of \"" + name + "\" gives no value");
    return answer.front();
  }
  return stored != nullptr ? *stored : declaredValue(declared);
}

}  // namespace

const Class* classOf(const Session& session, const Value& value) {
  const Object* object = value.object();
  return object == nullptr ? nullptr : session.classes.find(object->classId);
}

bool mayUse(const kcos::COSExtendedAccess& access, const Class& owner, const Routine* asking) {
  if (access.level == Public || access.level == Immutable || access.level == Constant) return true;
  const Class* own = asking == nullptr ? nullptr : asking->context().ownClass;
  if (own == nullptr) return false;
  if (own == &owner || (access.level == Protected && own->derivesFrom(owner))) return true;
  return std::ranges::any_of(access.classes, [own](const kcos::COSInternedName& granted) {
    const Class* found = session().classes.find(granted);
    return found != nullptr && own->derivesFrom(*found);
  });
}

ValuePtr newObject(const Class& oneClass) {
  return newValue({1, 1}, Object{oneClass.names().id, oneClass.names().dotted, {}, {}, {}});
}

ValuePtr newEnumerationMember(const Class& oneClass, const std::string& member) {
  return newValue({1, 1}, Object{oneClass.names().id, oneClass.names().dotted, {}, member, {}});
}

ValuePtr elementOf(const ValuePtr& value, std::size_t index) {
  if (index >= value->elementCount())
    failCode("KORVAL:code:Index", "The index " + std::to_string(index + 1) + " is beyond the end");
  return value->elementCount() == 1 && !value->as<Objects>() ? value : gathered(*value, {index}, {1, 1});
}

bool readingRunsCode(const Session& session, const Value& object, const std::string& name) {
  const Class* oneClass = classOf(session, object);
  const Property* property = oneClass == nullptr ? nullptr : propertyOf(*oneClass, name);
  return property != nullptr && property->content().getter != nullptr;
}

ValuePtr readProperty(Session& session, const ValuePtr& object, const std::string& name,
                      const Routine* asking) {
  if (object->as<Object>()) return readObject(session, object, name, asking);
  if (const auto* structures = object->as<Structures>()) return readStructure(*structures, name);
  const Opaque* opaque = object->as<Opaque>();
  if (opaque == nullptr)
    failCode("KORVAL:code:WrongType",
             "A value of class \"" + object->className() + "\" has no \"" + name + "\"");
  const ValuePtr* field = findNamed(opaque->fields, name);
  if (field == nullptr) failMember(opaque->className, name);
  return *field;
}

ValuePtr storedProperty(Session& session, const ValuePtr& object, const std::string& name) {
  const Object* content = object->as<Object>();
  if (content == nullptr) return readProperty(session, object, name, nullptr);
  if (const ValuePtr* stored = findNamed(content->properties, name)) return *stored;
  const Class* oneClass = classOf(session, *object);
  const Property* property = oneClass == nullptr ? nullptr : propertyOf(*oneClass, name);
  if (property == nullptr) failMember(object->className(), name);
  return declaredValue(property->content());
}

ValuePtr withProperty(Session& session, const Value& value, const std::string& name, ValuePtr content,
                      const Routine* asking) {
  Object object = *value.as<Object>();
  const Class* oneClass = classOf(session, value);
  const Property* property = oneClass == nullptr ? nullptr : propertyOf(*oneClass, name);
  if (property == nullptr) failMember(value.className(), name);
  const PropertyContent& declared = property->content();
  const bool inside = asking != nullptr && asking->context().ownClass == property->definingClass();
  if (declared.set.level == Constant || (declared.set.level == Immutable && !inside) || declared.dependent ||
      !mayUse(declared.set, *property->definingClass(), asking))
    failAccess("Setting", name);
  if (const ValuePtr* stored = findNamed(object.properties, name); stored != nullptr)
    *const_cast<ValuePtr*>(stored) = std::move(content);
  else
    object.properties.emplace_back(name, std::move(content));
  return newValue({1, 1}, std::move(object));
}

Values construct(Evaluator& caller, const Class& oneClass, Values arguments) {
  const Method* constructor = oneClass.method(alreadyInterned(oneClass.simpleName()));
  if (oneClass.enumeration())
    failCode("KORVAL:code:NoValue",
             "Of the enumeration \"" + oneClass.names().dotted.text() + "\" there are only its members");
  if (constructor == nullptr || constructor->content().routine == nullptr) {
    if (arguments.empty()) return {newObject(oneClass)};
    failCode("KORVAL:code:ArgumentCount",
             "The class \"" + oneClass.names().dotted.text() + "\" has no constructor that takes arguments");
  }
  if (!mayUse(constructor->content().access, *constructor->definingClass(), caller.routine()))
    failAccess("Constructing", oneClass.names().dotted.text());
  return callRoutine(caller.session(), *constructor->content().routine, nullptr, std::move(arguments), 1);
}

ValuePtr classConstant(const Class& oneClass, const std::string& name, const Routine* asking) {
  if (oneClass.member(alreadyInterned(name)) != nullptr) return newEnumerationMember(oneClass, name);
  const Property* property = propertyOf(oneClass, name);
  if (property == nullptr || property->content().set.level != Constant) return nullptr;
  if (!mayUse(property->content().get, *property->definingClass(), asking)) failAccess("Reading", name);
  return declaredValue(property->content());
}

bool hasStaticMethod(const Class& oneClass, const std::string& name) {
  const Method* method = oneClass.method(alreadyInterned(name));
  return method != nullptr && method->content().isStatic;
}

Values callStatic(Evaluator& caller, const Class& oneClass, const std::string& name, Values arguments,
                  std::size_t wanted) {
  const std::string& className = oneClass.names().dotted.text();
  const Method* method = oneClass.method(alreadyInterned(name));
  if (method == nullptr || !method->content().isStatic) failMember(className, name);
  if (!mayUse(method->content().access, *method->definingClass(), caller.routine()))
    failAccess("Calling", name);
  if (method->content().routine == nullptr)
    failCode("KORVAL:code:NoCode", "The method \"" + className + "." + name + "\" has no code");
  return callRoutine(caller.session(), *method->content().routine, nullptr, std::move(arguments), wanted);
}

bool hasMethod(const Session& session, const Value& value, const std::string& name) {
  if (const Opaque* opaque = value.opaque())
    return std::ranges::find(opaque->methods, name, &Opaque::Method::name) != opaque->methods.end();
  const Class* oneClass = classOf(session, value);
  return oneClass != nullptr && oneClass->method(alreadyInterned(name)) != nullptr;
}

}  // namespace embedded
