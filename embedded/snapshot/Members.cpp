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

const Shape<AttributeDescription> attributeShape{
    .kind = "an attribute",
    .keys = {{"name", into<&AttributeDescription::name>, Required},
             {"type", into<&AttributeDescription::type>},
             {"value", into<&AttributeDescription::value>}},
};

const Shape<OptimizedStorage> optimizedShape{
    .kind = "the object of an optimised storage",
    .keys = {{"customGetter", into<&OptimizedStorage::customGetter>},
             {"flag", into<&OptimizedStorage::flag>}},
};

const Shape<ValidationDescription> validationShape{
    .kind = "a validation",
    .keys = {{"class", into<&ValidationDescription::className>},
             {"size", into<&ValidationDescription::size>},
             {"functions", into<&ValidationDescription::functions>}},
};

const Shape<PropertyDescription> propertyShape{
    .kind = "a property",
    .keys = {{"name", into<&PropertyDescription::name>, Required},
             {"access", into<&PropertyDescription::get>},
             {"get", into<&PropertyDescription::get>},
             {"set", into<&PropertyDescription::set>},
             {"constant", takeConstant},
             {"hidden", into<&PropertyDescription::hidden>},
             {"dependent", into<&PropertyDescription::dependent>},
             {"type", into<&PropertyDescription::type>},
             {"validation", into<&PropertyDescription::validation>},
             {"values", into<&PropertyDescription::values>},
             {"conversion", into<&PropertyDescription::conversion>},
             {"attributes", into<&PropertyDescription::attributes>},
             {"optimized", into<&PropertyDescription::optimized>},
             {"value", into<&PropertyDescription::value>},
             {"getter", into<&PropertyDescription::getter>}},
    .conflicts = {{"access", "get"}, {"access", "set"}, {"constant", "set"}},
    .finish = finishProperty,
};

const Shape<MethodDescription> methodShape{
    .kind = "a method",
    .keys = {{"name", into<&MethodDescription::name>, Required},
             {"access", into<&MethodDescription::access>},
             {"static", into<&MethodDescription::isStatic>},
             {"hidden", into<&MethodDescription::hidden>},
             {"visible", into<&MethodDescription::visible>},
             {"code", into<&MethodDescription::code>}},
};

const Shape<EnumerationMemberDescription> enumerationMemberShape{
    .kind = "an enumeration member",
    .keys = {{"name", into<&EnumerationMemberDescription::name>, Required},
             {"hidden", into<&EnumerationMemberDescription::hidden>}},
};

/// A member that has nothing but a name may be written as that name.
template <class Member>
void takeMember(Reader& reader, Event& event, Member& member, const Shape<Member>& shape) {
  if (event.kind == Event::Text) return take(reader, event, member.name);
  takeObject(reader, event, member, shape);
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

}  // namespace embedded::snapshot
