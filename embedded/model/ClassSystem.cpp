#include "embedded/model/ClassSystem.h"

#include <algorithm>
#include <utility>

#include "embedded/model/Names.h"
#include "embedded/model/Unicode.h"
#include "embedded/model/Value.h"

namespace embedded {

namespace {

/// Numbers below stand for the built-in classes.
constexpr int firstNumber = 32;

}  // namespace

ClassSystem::ClassSystem(const Description& description) : names_(ClassNames::of(description.classes)) {
  for (const std::string& name : description.namespaces) makeNamespace(name);
  for (const ClassDescription& oneClass : description.classes) addClass(oneClass);
  for (const FunctionDescription& function : description.functions) addFunction(function);
  // All classes are there before any is completed: superclasses, access lists and types may name later ones.
  for (std::size_t at = 0; at < classes_.size(); ++at) completeClass(*classes_[at], description.classes[at]);
}

void ClassSystem::addClass(const ClassDescription& description) {
  const std::string& dotted = description.name;
  const std::string& component = description.component;
  const Class::Names names{interned(identityOf(component, dotted)), interned(dotted), interned(component)};
  Namespace* inNamespace = makeNamespace(namespaceOf(dotted));
  const int number = firstNumber + static_cast<int>(classes_.size());
  classes_.push_back(std::make_unique<Class>(names, inNamespace, number, description));
  byDottedName_[&names.dotted.text()].push_back(classes_.back().get());
  if (inNamespace != nullptr) inNamespace->addClass(*classes_.back());
}

void ClassSystem::addFunction(const FunctionDescription& description) {
  // Names with other characters in them are those of files, which no namespace lists.
  if (!isDottedName(description.name)) return;
  Namespace* inNamespace = makeNamespace(namespaceOf(description.name));
  if (inNamespace == nullptr) return;
  // A function in a namespace is listed as a method that no class defines.
  functions_.emplace_back(nullptr,
                          MethodContent{.name = MemberText(std::string(simpleNameOf(description.name))),
                                        .access = {},
                                        .isStatic = false,
                                        .hidden = description.hidden,
                                        .visible = description.visible.value_or(!description.hidden)});
  inNamespace->addFunction(functions_.back());
}

void ClassSystem::completeClass(Class& oneClass, const ClassDescription& description) {
  Class::Parts parts;
  for (const std::string& superclass : description.superclasses)
    if (Class* found = find(superclass); found != nullptr) parts.superclasses.push_back(found);
  for (const PropertyDescription& property : description.properties)
    parts.properties.push_back(makeProperty(oneClass, contentOf(oneClass, property), property.optimized));
  for (const MethodDescription& method : description.methods)
    parts.methods.push_back(
        std::make_unique<Method>(&oneClass, MethodContent{.name = MemberText(method.name),
                                                          .access = accessOf(method.access),
                                                          .isStatic = method.isStatic,
                                                          .hidden = method.hidden,
                                                          .visible = method.visible.value_or(!method.hidden),
                                                          .routine = routineOf(oneClass, method)}));
  oneClass.complete(std::move(parts));
}

std::shared_ptr<const Routine> ClassSystem::routineOf(const Class& oneClass,
                                                      const MethodDescription& method) {
  if (method.code.empty() || !method.name) return nullptr;
  // Nothing else tells a constructor than that it has the name of its class.
  const bool constructs = *method.name == oneClass.simpleName();
  return routineOf(oneClass, *method.name, method.code,
                   constructs        ? Routine::Receiver::NewObject
                   : method.isStatic ? Routine::Receiver::None
                                     : Routine::Receiver::Object);
}

std::shared_ptr<const Routine> ClassSystem::routineOf(const Class& oneClass, const std::string& member,
                                                      const std::string& code, Routine::Receiver receiver) {
  if (code.empty()) return nullptr;
  const std::string& dotted = oneClass.names().dotted.text();
  return std::make_shared<Routine>(Routine::Context{.name = dotted + "." + member,
                                                    .ownClass = &oneClass,
                                                    .component = oneClass.names().component.text(),
                                                    .inNamespace = std::string(namespaceOf(dotted)),
                                                    .receiver = receiver},
                                   widened(code));
}

PropertyContent ClassSystem::contentOf(const Class& oneClass, const PropertyDescription& description) {
  PropertyContent content{
      .name = MemberText(description.name),
      .type = types_.typeOf(description, valuesOf(description)),
      .get = accessOf(description.get),
      .set = accessOf(description.set),
      .hidden = description.hidden,
      .dependent = description.dependent,
      .attributes = {},
      .value = description.value ? std::make_shared<const ValueDescription>(*description.value) : nullptr,
      .getter =
          routineOf(oneClass, description.name.value_or(""), description.getter, Routine::Receiver::Object)};
  for (const AttributeDescription& attribute : description.attributes)
    content.attributes.emplace_back(interned(attribute.name), types_.named(attribute.type), attribute.value);
  return content;
}

PossibleValues ClassSystem::valuesOf(const PropertyDescription& description) {
  using List = std::vector<kcos::COSPossibleValue>;
  if (description.values)
    return std::make_shared<const List>(description.values->begin(), description.values->end());
  // The class of the validation comes first, as it does for the type that the library tells.
  const bool isDeclared = description.validation && !description.validation->className.empty();
  const Class* type = find(isDeclared ? description.validation->className : description.type);
  if (type == nullptr || !type->enumeration()) return nullptr;
  PossibleValues& known = membersOf_[type];
  if (known != nullptr) return known;
  List members;
  for (const auto& member : type->members())
    if (!member->hidden() && !member->name().isNull())
      members.emplace_back(ValueDescription{ObjectValue{.className = type->names().id.text(),
                                                        .properties = {},
                                                        .member = member->name().text(),
                                                        .text = {}}});
  return known = std::make_shared<const List>(std::move(members));
}

kcos::COSExtendedAccess ClassSystem::accessOf(const Access& access) const {
  kcos::COSExtendedAccess result{kcos::MemberAccess{access.level}, {}};
  for (const std::string& name : access.classes) {
    const Class* found = find(name);
    // By identity, whichever of its names the description uses, because that is what clients compare.
    result.classes.insert(found != nullptr ? found->names().id : interned(name));
  }
  return result;
}

Namespace* ClassSystem::makeNamespace(std::string_view dottedName) {
  Namespace* inner = nullptr;
  for (std::size_t end = 0; end < dottedName.size(); ++end) {
    // From the outermost on: each namespace is listed by the one around it.
    end = std::min(dottedName.find('.', end), dottedName.size());
    const kcos::COSInternedName name = interned(dottedName.substr(0, end));
    Namespace* outer = std::exchange(inner, findNamespace(name));
    if (inner != nullptr) continue;
    inner = (namespaces_[&name.text()] = std::make_unique<Namespace>(name)).get();
    if (outer != nullptr) outer->addNamespace(*inner);
  }
  return inner;
}

Class* ClassSystem::find(std::string_view name) const {
  const auto found = names_.find(name);
  return found ? classes_[*found].get() : nullptr;
}

Class* ClassSystem::findFor(std::string_view component, std::string_view dottedName) const {
  const kcos::COSInternedName name = alreadyInterned(dottedName);
  const auto found = byDottedName_.find(&name.text());
  // It may still be an identity, or an alias.
  if (name.isNull() || found == byDottedName_.end()) return find(dottedName);
  // A class of the caller's component comes first, then one of no component, then the first one declared.
  Class* withoutComponent = nullptr;
  for (Class* candidate : found->second) {
    const kcos::COSInternedName own = candidate->names().component;
    if (!component.empty() && own.text() == component) return candidate;
    if (own.isNull() && withoutComponent == nullptr) withoutComponent = candidate;
  }
  return withoutComponent != nullptr ? withoutComponent : found->second.front();
}

Namespace* ClassSystem::findNamespace(kcos::COSInternedName dottedName) const {
  const auto found = namespaces_.find(&dottedName.text());
  return found == namespaces_.end() ? nullptr : found->second.get();
}

std::vector<std::string> ClassSystem::namespaceNames() const {
  std::vector<std::string> names;
  for (const auto& [name, found] : namespaces_) names.push_back(*name);
  // The table is keyed by addresses, whose order means nothing.
  std::ranges::sort(names);
  return names;
}

const Class* ClassSystem::numbered(int number) const {
  const auto at = static_cast<std::size_t>(number - firstNumber);
  return number >= firstNumber && at < classes_.size() ? classes_[at].get() : nullptr;
}

bool ClassSystem::isOfClass(const Value& value, std::string_view className) const {
  if (value.className() == className) return true;
  if (const Opaque* opaque = value.opaque())
    return className == "opaque" || (opaque->java && className == "java");
  if (value.as<ForeignMember>()) return className == "java";
  if (value.as<std::vector<double>>()) return className == "numeric" || className == "float";
  const Class* own = find(value.classId());
  const Class* base = own == nullptr ? nullptr : find(className);
  return base != nullptr && own->derivesFrom(*base);
}

}  // namespace embedded
