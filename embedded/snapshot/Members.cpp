#include "embedded/snapshot/Object.h"

namespace embedded::snapshot {

namespace {

constexpr int constantLevel = 5;

void takeConstant(Reader& reader, Event& event, PropertyDescription& property) {
  bool constant = false;
  take(reader, event, constant);
  if (constant) property.set.level = constantLevel;
}

// "access" has been read as the get access; "constant" may have been read before or after it.
void finishProperty(PropertyDescription& property, const ObjectHandler<PropertyDescription>& read) {
  if (!read.has("access")) return;
  const bool constant = property.set.level == constantLevel;
  property.set = property.get;
  if (constant) property.set.level = constantLevel;
}

bool same(const Access& one, const Access& other) {
  return one.level == other.level && one.classes == other.classes;
}
bool isConstant(const PropertyDescription& property) {
  return same(property.set, {.level = constantLevel}) && !same(property.get, property.set);
}

// One "access" stands for two that are the same; "constant" for the plainest one that nobody may set.
Json giveAccess(Writer& writer, const PropertyDescription& property) {
  return same(property.get, property.set) ? give(writer, property.get) : Json();
}
Json giveGet(Writer& writer, const PropertyDescription& property) {
  return same(property.get, property.set) || same(property.get, {}) ? Json() : give(writer, property.get);
}
Json giveSet(Writer& writer, const PropertyDescription& property) {
  if (same(property.get, property.set) || isConstant(property) || same(property.set, {})) return {};
  return give(writer, property.set);
}
Json giveConstant(Writer&, const PropertyDescription& property) {
  return isConstant(property) ? Json(true) : Json();
}

const Shape<AttributeDescription> attributeShape{
    .kind = "an attribute",
    .keys = {key<&AttributeDescription::name>("name", Required), key<&AttributeDescription::type>("type"),
             key<&AttributeDescription::value>("value")},
};

const Shape<OptimizedStorage> optimizedShape{
    .kind = "the object of an optimised storage",
    .keys = {key<&OptimizedStorage::customGetter>("customGetter"), key<&OptimizedStorage::flag>("flag")},
};

const Shape<ValidationDescription> validationShape{
    .kind = "a validation",
    .keys = {key<&ValidationDescription::className>("class"), key<&ValidationDescription::size>("size"),
             key<&ValidationDescription::functions>("functions")},
};

const Shape<PropertyDescription> propertyShape{
    .kind = "a property",
    .keys = {key<&PropertyDescription::name>("name", Required),
             {"access", into<&PropertyDescription::get>, giveAccess},
             {"get", into<&PropertyDescription::get>, giveGet},
             {"set", into<&PropertyDescription::set>, giveSet},
             {"constant", takeConstant, giveConstant},
             key<&PropertyDescription::hidden>("hidden"),
             key<&PropertyDescription::dependent>("dependent"),
             key<&PropertyDescription::type>("type"),
             key<&PropertyDescription::validation>("validation"),
             key<&PropertyDescription::values>("values"),
             key<&PropertyDescription::conversion>("conversion"),
             key<&PropertyDescription::attributes>("attributes"),
             key<&PropertyDescription::optimized>("optimized"),
             key<&PropertyDescription::value>("value"),
             key<&PropertyDescription::getter>("getter")},
    .conflicts = {{"access", "get"}, {"access", "set"}, {"constant", "set"}},
    .finish = finishProperty,
};

const Shape<MethodDescription> methodShape{
    .kind = "a method",
    .keys = {key<&MethodDescription::name>("name", Required), key<&MethodDescription::access>("access"),
             key<&MethodDescription::isStatic>("static"), key<&MethodDescription::hidden>("hidden"),
             key<&MethodDescription::visible>("visible"), key<&MethodDescription::code>("code")},
};

const Shape<EnumerationMemberDescription> enumerationMemberShape{
    .kind = "an enumeration member",
    .keys = {key<&EnumerationMemberDescription::name>("name", Required),
             key<&EnumerationMemberDescription::hidden>("hidden")},
};

/// A member that has nothing but a name may be written as that name.
template <class Member>
void takeMember(Reader& reader, Event& event, Member& member, const Shape<Member>& shape) {
  if (event.kind == Event::Text) return take(reader, event, member.name);
  takeObject(reader, event, member, shape);
}

template <class Member>
Json giveMember(Writer& writer, const Member& member, const Shape<Member>& shape) {
  Json object = giveObject(writer, member, shape);
  return object.size() == 1 && member.name ? object.front() : object;
}

}  // namespace

void take(Reader& reader, Event& event, AttributeDescription& destination) {
  takeObject(reader, event, destination, attributeShape);
}

void take(Reader& reader, Event& event, std::optional<OptimizedStorage>& destination) {
  takeObject(reader, event, destination.emplace(), optimizedShape);
}

void take(Reader& reader, Event& event, std::optional<ValidationDescription>& destination) {
  takeObject(reader, event, destination.emplace(), validationShape);
}

void take(Reader& reader, Event& event, std::optional<std::vector<ValueDescription>>& destination) {
  take(reader, event, destination.emplace());
}

void take(Reader& reader, Event& event, PropertyDescription& destination) {
  takeMember(reader, event, destination, propertyShape);
}

void take(Reader& reader, Event& event, MethodDescription& destination) {
  takeMember(reader, event, destination, methodShape);
}

void take(Reader& reader, Event& event, EnumerationMemberDescription& destination) {
  takeMember(reader, event, destination, enumerationMemberShape);
}

Json give(Writer& writer, const AttributeDescription& value) {
  return giveObject(writer, value, attributeShape);
}

Json give(Writer& writer, const OptimizedStorage& value) { return giveObject(writer, value, optimizedShape); }

Json give(Writer& writer, const ValidationDescription& value) {
  return giveObject(writer, value, validationShape);
}

Json give(Writer& writer, const PropertyDescription& value) {
  return giveMember(writer, value, propertyShape);
}

Json give(Writer& writer, const MethodDescription& value) { return giveMember(writer, value, methodShape); }

Json give(Writer& writer, const EnumerationMemberDescription& value) {
  return giveMember(writer, value, enumerationMemberShape);
}

}  // namespace embedded::snapshot
