#include "embedded/language/Members.h"

#include <algorithm>

#include "embedded/language/Convert.h"
#include "embedded/model/Names.h"

namespace embedded {

namespace {

using kcos::ConstantAccess, kcos::ImmutableAccess, kcos::ProtectedAccess, kcos::PublicAccess;

[[noreturn]] void failMember(Interpreter& interpreter, const std::string& owner, const std::string& name) {
  interpreter.fail("KORVAL:code:NoSuchMember", "\"" + owner + "\" has no \"" + name + "\"");
}

[[noreturn]] void failAccess(Interpreter& interpreter, const std::string& what, const std::string& name) {
  interpreter.fail("KORVAL:code:AccessDenied", what + " \"" + name + "\" is not allowed here");
}

template <class Named>
const ValuePtr* findNamed(const std::vector<std::pair<Named, ValuePtr>>& pairs, const std::string& name) {
  const auto found = std::ranges::find(pairs, name, &std::pair<Named, ValuePtr>::first);
  return found == pairs.end() ? nullptr : &found->second;
}

/// Null too without a class.
const Property* propertyOf(const Class* oneClass, const std::string& name) {
  return oneClass == nullptr ? nullptr : oneClass->property(alreadyInterned(name));
}

ValuePtr declaredValue(Interpreter& interpreter, const PropertyContent& property) {
  // Objects hold only what was set; the declaration stands for the rest.
  if (property.value == nullptr) return newEmpty();
  const std::int64_t before = Value::memoryOfThread();
  ValuePtr value = makeValue(*property.value, interpreter.world.classes);
  // Made anew by each reading, with all that is inside it.
  interpreter.step(static_cast<std::uint64_t>(Value::memoryOfThread() - before) / sizeof(double));
  return value;
}

ValuePtr orEmpty(const ValuePtr& value) { return value == nullptr ? newEmpty() : value; }

ValuePtr readStructure(Interpreter& interpreter, const Structures& structures, const std::string& name) {
  const std::size_t field = structures.indexOf(name);
  if (field == structures.fields.size()) failMember(interpreter, structures.className, name);
  return orEmpty(structures.values.at(field));
}

const Property& readableProperty(Interpreter& interpreter, const Value& value, const Class& oneClass,
                                 const std::string& name, const Routine* asking) {
  const Property* property = propertyOf(&oneClass, name);
  if (property == nullptr) failMember(interpreter, value.className(), name);
  if (!mayUse(interpreter, property->content().get, *property->definingClass(), asking))
    failAccess(interpreter, "Reading", name);
  return *property;
}

ValuePtr readObject(Interpreter& interpreter, const ValuePtr& object, const std::string& name,
                    const Routine* asking) {
  const Object& content = *object->as<Object>();
  const ValuePtr* stored = findNamed(content.properties, name);
  const Class* oneClass = classOf(interpreter, *object);
  if (oneClass == nullptr)
    // Without a class there are no rules: whoever asks may read what the object holds.
    return stored != nullptr ? *stored : (failMember(interpreter, object->className(), name), nullptr);
  const PropertyContent& declared = readableProperty(interpreter, *object, *oneClass, name, asking).content();
  // A get method reads its own property as it is stored; otherwise it would call itself without end.
  if (declared.getter != nullptr && declared.getter.get() != asking) {
    const Values result = callRoutine(interpreter, *declared.getter, nullptr, {object}, 1);
    if (result.empty())
      interpreter.fail("KORVAL:code:NoValue", "The get method of \"" + name + "\" gives no value");
    return result.front();
  }
  return stored != nullptr ? *stored : declaredValue(interpreter, declared);
}

}  // namespace

const Class* classOf(const Interpreter& interpreter, const Value& value) {
  return interpreter.world.classes.find(value.classId());
}

bool mayUse(const Interpreter& interpreter, const kcos::COSExtendedAccess& access, const Class& owner,
            const Routine* asking) {
  // "immutable" and "constant" say who may write; as an access to read or to call they let nobody else in, and nobody
  // else is offered such a member.
  if (access.level == PublicAccess) return true;
  const Class* own = asking == nullptr ? nullptr : asking->context().ownClass;
  if (own == nullptr) return false;
  if (own == &owner || (access.level == ProtectedAccess && own->derivesFrom(owner))) return true;
  // Classes that derive from a listed one may use the member, too.
  return std::ranges::any_of(access.classes, [&interpreter, own](const kcos::COSInternedName& granted) {
    const Class* found = interpreter.world.classes.find(granted);
    return found != nullptr && own->derivesFrom(*found);
  });
}

ValuePtr newObject(const Class& oneClass) {
  return newValue({1, 1}, Object{oneClass.names().id, oneClass.names().dotted, {}, {}, {}});
}

ValuePtr newEnumerationMember(const Class& oneClass, const std::string& member) {
  return newValue({1, 1}, Object{oneClass.names().id, oneClass.names().dotted, {}, member, {}});
}

ValuePtr elementOf(Interpreter& interpreter, const ValuePtr& value, std::size_t index) {
  if (index >= value->elementCount())
    interpreter.fail("KORVAL:code:Index", "The index " + std::to_string(index + 1) + " is beyond the end");
  // An array of one object is still an array, and its element is the object in it.
  return value->elementCount() == 1 && !value->as<Objects>()
             ? value
             : elementsAt(interpreter, *value, {index}, {1, 1});
}

void requireReadable(Interpreter& interpreter, const Value& value, const std::string& name,
                     const Routine* asking) {
  if (const Class* oneClass = classOf(interpreter, value))
    readableProperty(interpreter, value, *oneClass, name, asking);
}

bool readingRunsCode(const Interpreter& interpreter, const Value& object, const std::string& name) {
  const Property* property = propertyOf(classOf(interpreter, object), name);
  return property != nullptr && property->content().getter != nullptr;
}

ValuePtr readProperty(Interpreter& interpreter, const ValuePtr& object, const std::string& name,
                      const Routine* asking) {
  if (object->as<Object>()) return readObject(interpreter, object, name, asking);
  if (const auto* structures = object->as<Structures>()) return readStructure(interpreter, *structures, name);
  const Opaque* opaque = object->as<Opaque>();
  if (opaque == nullptr)
    interpreter.fail("KORVAL:code:WrongType",
                     "A value of class \"" + object->className() + "\" has no \"" + name + "\"");
  const ValuePtr* field = findNamed(opaque->fields, name);
  if (field == nullptr) failMember(interpreter, opaque->className, name);
  return *field;
}

ValuePtr storedProperty(Interpreter& interpreter, const ValuePtr& object, const std::string& name) {
  const Object* content = object->as<Object>();
  if (content == nullptr) return readProperty(interpreter, object, name, nullptr);
  if (const ValuePtr* stored = findNamed(content->properties, name)) return *stored;
  const Property* property = propertyOf(classOf(interpreter, *object), name);
  if (property == nullptr) failMember(interpreter, object->className(), name);
  return declaredValue(interpreter, property->content());
}

ValuePtr withProperty(Interpreter& interpreter, const Value& value, const std::string& name, ValuePtr content,
                      const Routine* asking) {
  interpreter.step(value.as<Object>()->properties.size());
  // A copy, because values are shared: other variables keep the object as it was.
  Object object = *value.as<Object>();
  const Property* property = propertyOf(classOf(interpreter, value), name);
  if (property == nullptr) failMember(interpreter, value.className(), name);
  const PropertyContent& declared = property->content();
  // Immutable properties are for code of the class that declares them, not for that of derived ones.
  const bool inside = asking != nullptr && asking->context().ownClass == property->definingClass();
  if (declared.set.level == ConstantAccess || (declared.set.level == ImmutableAccess && !inside) ||
      declared.dependent || !mayUse(interpreter, declared.set, *property->definingClass(), asking))
    failAccess(interpreter, "Setting", name);
  const auto stored = std::ranges::find(object.properties, name, &std::pair<std::string, ValuePtr>::first);
  if (stored != object.properties.end())
    stored->second = std::move(content);
  else
    object.properties.emplace_back(name, std::move(content));
  return newValue({1, 1}, std::move(object));
}

Values construct(Evaluator& caller, const Class& oneClass, Values arguments) {
  Interpreter& interpreter = caller.interpreter();
  const Method* constructor = oneClass.method(alreadyInterned(oneClass.simpleName()));
  if (oneClass.enumeration())
    interpreter.fail("KORVAL:code:NoValue", "Of the enumeration \"" + oneClass.names().dotted.text() +
                                                "\" there are only its members");
  if (constructor == nullptr || constructor->content().routine == nullptr) {
    // A constructor without code counts as none: the object has what its class declares.
    if (arguments.empty()) return {newObject(oneClass)};
    interpreter.fail("KORVAL:code:ArgumentCount", "The class \"" + oneClass.names().dotted.text() +
                                                      "\" has no constructor that takes arguments");
  }
  if (!mayUse(interpreter, constructor->content().access, *constructor->definingClass(), caller.routine()))
    failAccess(interpreter, "Constructing", oneClass.names().dotted.text());
  return callRoutine(interpreter, *constructor->content().routine, nullptr, std::move(arguments), 1);
}

ValuePtr classConstant(Interpreter& interpreter, const Class& oneClass, const std::string& name,
                       const Routine* asking) {
  if (oneClass.member(alreadyInterned(name)) != nullptr) return newEnumerationMember(oneClass, name);
  const Property* property = propertyOf(&oneClass, name);
  // Nothing else tells constants apart than that nobody may set them.
  if (property == nullptr || property->content().set.level != ConstantAccess) return nullptr;
  if (!mayUse(interpreter, property->content().get, *property->definingClass(), asking))
    failAccess(interpreter, "Reading", name);
  // A get method wants an object, and there is none: it gets a new one.
  if (property->content().getter != nullptr)
    return readObject(interpreter, newObject(oneClass), name, asking);
  return declaredValue(interpreter, property->content());
}

bool hasStaticMethod(const Class& oneClass, const std::string& name) {
  const Method* method = oneClass.method(alreadyInterned(name));
  return method != nullptr && method->content().isStatic;
}

Values callStatic(Evaluator& caller, const Class& oneClass, const std::string& name, Values arguments,
                  std::size_t nargout) {
  Interpreter& interpreter = caller.interpreter();
  const std::string& className = oneClass.names().dotted.text();
  const Method* method = oneClass.method(alreadyInterned(name));
  if (method == nullptr || !method->content().isStatic) failMember(interpreter, className, name);
  if (!mayUse(interpreter, method->content().access, *method->definingClass(), caller.routine()))
    failAccess(interpreter, "Calling", name);
  if (method->content().routine == nullptr)
    interpreter.fail("KORVAL:code:NoCode", "The method \"" + className + "." + name + "\" has no code");
  return callRoutine(interpreter, *method->content().routine, nullptr, std::move(arguments), nargout);
}

bool hasMethod(const Interpreter& interpreter, const Value& value, const std::string& name) {
  if (const Opaque* opaque = value.opaque())
    return std::ranges::find(opaque->methods, name, &Opaque::Method::name) != opaque->methods.end();
  const Class* oneClass = classOf(interpreter, value);
  return oneClass != nullptr && oneClass->method(alreadyInterned(name)) != nullptr;
}

}  // namespace embedded
