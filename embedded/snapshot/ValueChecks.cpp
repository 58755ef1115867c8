#include <algorithm>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "embedded/model/Value.h"
#include "embedded/snapshot/Checks.h"

namespace embedded::snapshot {

namespace {

[[noreturn]] void refuseSize(const CheckContext& context, const Place& place, const std::string& reason) {
  context.fail("snapshot.wrong-size", {place, "size"}, reason);
}

/// Without a value when it is too big for any array.
std::optional<std::size_t> productOf(const std::vector<std::size_t>& size) {
  std::size_t product = 1;
  bool tooBig = false;
  for (const std::size_t dimension : size) {
    // Whatever the other dimensions are: without elements nothing can be too big.
    if (dimension == 0) return 0;
    tooBig = tooBig || __builtin_mul_overflow(product, dimension, &product);
  }
  return tooBig ? std::nullopt : std::optional(product);
}

/// An array without a size is a row.
void checkSize(const CheckContext& context, const std::vector<std::size_t>& size, std::size_t count,
               const Place& place) {
  if (size.empty()) return;
  if (size.size() == 1) refuseSize(context, place, "a size has at least two dimensions");
  if (productOf(size) == count) return;
  refuseSize(context, place,
             "there are " + std::to_string(count) + " elements, which is not the product of the dimensions");
}

/// The size of structures without fields, which have no values to hold it against.
void checkBareSize(const CheckContext& context, const std::vector<std::size_t>& size, const Place& place) {
  if (size.size() == 1) refuseSize(context, place, "a size has at least two dimensions");
  if (!productOf(size)) refuseSize(context, place, "the product of the dimensions is too big");
}

class ValueCheck {
 public:
  explicit ValueCheck(const CheckContext& context) : context_(context) {}

  void check(const ValueDescription& value, const Place& place) {
    std::visit([&](const auto& content) { checkContent(content, place); }, value.content);
  }

 private:
  using Names = std::unordered_set<std::string>;

  void checkContent(const DoubleArray& array, const Place& place) {
    checkSize(context_, array.size, array.elements.size(), place);
  }
  void checkContent(const LogicalArray& array, const Place& place) {
    checkSize(context_, array.size, array.elements.size(), place);
  }
  void checkContent(const CharacterRow&, const Place&) {}
  void checkContent(const StringScalar&, const Place&) {}
  void checkContent(const StringArray& array, const Place& place) {
    checkSize(context_, array.size, array.elements.size(), place);
  }
  void checkContent(const CharacterArray& array, const Place& place) {
    checkSize(context_, array.size, array.elements.size(), place);
  }
  void checkContent(const FunctionHandleValue& handle, const Place& place) {
    checkDottedName(context_, handle.function, {place, "handle"});
  }
  void checkContent(const ClassReferenceValue& reference, const Place& place) {
    for (const ForeignClassDescription& foreign : context_.description.foreignClasses)
      if (foreign.name == reference.className) return;
    context_.requireClass(reference.className, {place, "class"}, "the class of the reference");
  }
  void checkContent(const TallValue& tall, const Place& place) {
    if (tall.inside.size() != 1)
      context_.fail("snapshot.wrong-size", {place, "tall"}, "a tall value holds one value");
    check(tall.inside.front(), {place, "tall"});
  }

  void checkContent(const ForeignMemberValue& member, const Place& place) {
    for (const ForeignClassDescription& foreign : context_.description.foreignClasses) {
      if (foreign.name != member.className) continue;
      if (std::ranges::find(foreign.members, member.member) != foreign.members.end()) return;
      context_.fail("snapshot.unknown-member", {place, "member"},
                    "the class " + inQuotes(foreign.name) + " has no member " + inQuotes(member.member));
    }
    context_.fail("snapshot.unknown-class", {place, "foreign"},
                  inQuotes(member.className) + " is no foreign class of this snapshot");
  }

  void checkContent(const ObjectArray& array, const Place& place) {
    checkSize(context_, array.size, array.elements.size(), place);
    const Place classPlace(place, "class");
    if (array.foreign)
      checkName(context_, array.className, classPlace);
    else
      requireObjectClass(array.className, classPlace, "the class of the objects");
    const Place objects(place, "objects");
    for (std::size_t index = 0; index < array.elements.size(); ++index) {
      const Place element(objects, index);
      if (!isElementOf(array, array.elements[index]))
        context_.fail("snapshot.wrong-class", element, "this is no object of the class of the array");
      check(array.elements[index], element);
    }
  }

  /// Objects of one array have one class as users know it.
  bool isElementOf(const ObjectArray& array, const ValueDescription& element) const {
    const auto* opaque = std::get_if<OpaqueObject>(&element.content);
    if (array.foreign) return opaque != nullptr && opaque->className == array.className;
    const auto* object = std::get_if<ObjectValue>(&element.content);
    return object != nullptr && knownName(object->className) == knownName(array.className);
  }

  const std::string& knownName(const std::string& className) const {
    const auto index = context_.classes.find(className);
    return index ? context_.description.classes[*index].name : className;
  }

  /// Without a value: the class is one that no description has.
  std::optional<std::size_t> requireObjectClass(const std::string& name, const Place& place,
                                                const std::string& role) const {
    if (name == namespaceObjectClass && !context_.classes.find(name)) return {};
    return context_.requireClass(name, place, role);
  }

  void checkContent(const OpaqueObject& object, const Place& place) {
    checkName(context_, object.className, {place, "opaque"});
    const Place fields(place, "fields");
    const Place methods(place, "methods");
    for (const auto& [name, value] : object.fields) {
      checkName(context_, name, fields);
      check(value, {fields, name});
    }
    for (const auto& [name, answer] : object.methods) {
      checkName(context_, name, methods);
      if (answer) check(*answer, {methods, name});
    }
  }

  void checkContent(const CellArray& array, const Place& place) {
    checkSize(context_, array.size, array.elements.size(), place);
    const Place cell(place, "cell");
    for (std::size_t index = 0; index < array.elements.size(); ++index) {
      if (array.elements[index]) check(*array.elements[index], {cell, index});
    }
  }

  void checkContent(const StructureArray& array, const Place& place) {
    checkFields(array, place);
    if (array.fields.empty()) return checkBareSize(context_, array.size, place);
    checkSize(context_, array.size, array.values.size() / array.fields.size(), place);
    for (std::size_t index = 0; index < array.values.size(); ++index) checkFieldValue(array, index, place);
  }

  void checkFields(const StructureArray& array, const Place& place) {
    Names seen;
    for (const auto& field : array.fields) {
      checkName(context_, field, place);
      if (!seen.insert(field).second)
        context_.fail("snapshot.duplicate-field", place, "there are two fields " + inQuotes(field));
    }
    const std::size_t left =
        array.fields.empty() ? array.values.size() : array.values.size() % array.fields.size();
    if (left != 0)
      context_.fail("snapshot.wrong-size", place,
                    "the structures have not one value for each of their fields");
  }

  /// One structure without a size is written as "struct", several as "structs".
  void checkFieldValue(const StructureArray& array, std::size_t index, const Place& place) {
    const std::string& field = array.fields[index % array.fields.size()];
    const bool single = array.size.empty() && array.values.size() == array.fields.size();
    const Place elements(place, single ? "struct" : "structs");
    const Place element = single ? elements : Place(elements, index / array.fields.size());
    check(array.values[index], {element, field});
  }

  void checkContent(const ObjectValue& object, const Place& place) {
    const auto index = requireObjectClass(object.className, {place, "object"}, "the class of the object");
    const Place properties(place, "properties");
    Names seen;
    for (const auto& [name, value] : object.properties) {
      const Place property(properties, name);
      if (index && !propertiesOf(*index).contains(name)) {
        context_.fail("snapshot.unknown-property", property,
                      "the class " + inQuotes(object.className) + " has no property " + inQuotes(name));
      }
      if (!seen.insert(name).second)
        context_.fail("snapshot.duplicate-property", property, inQuotes(name) + " has two values");
      check(value, property);
    }
    if (index && !object.member.empty()) requireMember(*index, object.member, {place, "member"});
  }

  void requireMember(std::size_t index, const std::string& name, const Place& place) const {
    const ClassDescription& described = context_.description.classes[index];
    for (const auto& member : described.members) {
      if (member.name == name) return;
    }
    context_.fail("snapshot.unknown-member", place,
                  "the class " + inQuotes(described.name) + " has no enumeration member " + inQuotes(name));
  }

  /// The names of a class's properties, own and inherited.
  const Names& propertiesOf(std::size_t index) {
    // Kept for each class: sessions hold many objects of few classes.
    auto [found, isNew] = properties_.try_emplace(index);
    if (isNew) collectProperties(index, found->second);
    return found->second;
  }

  void collectProperties(std::size_t index, Names& names) const {
    // A list of its own and no recursion: chains of superclasses may be as long as the snapshot.
    std::unordered_set<std::size_t> met{index};
    std::vector<std::size_t> open{index};
    while (!open.empty()) {
      const std::size_t current = open.back();
      open.pop_back();
      for (const auto& property : context_.description.classes[current].properties) {
        if (property.name) names.insert(*property.name);
      }
      for (const std::size_t superclass : context_.superclasses[current]) {
        if (met.insert(superclass).second) open.push_back(superclass);
      }
    }
  }

  const CheckContext& context_;
  std::unordered_map<std::size_t, Names> properties_;
};

}  // namespace

void checkWorkspace(const CheckContext& context) {
  const auto& variables = context.description.workspace;
  const Place root;
  const Place workspace(root, "workspace");
  std::unordered_set<std::string> names;
  ValueCheck values(context);
  for (std::size_t index = 0; index < variables.size(); ++index) {
    const Place variable(workspace, index);
    checkName(context, variables[index].name, {variable, "name"});
    if (!names.insert(variables[index].name).second) {
      context.fail("snapshot.duplicate-variable", {variable, "name"},
                   "there is already a variable " + inQuotes(variables[index].name));
    }
    inVariable(variables[index].name, [&] { values.check(variables[index].value, {variable, "value"}); });
  }
}

namespace {

void checkPropertyOf(const CheckContext& context, ValueCheck& check, const PropertyDescription& property,
                     const Place& place) {
  if (property.validation) {
    const Place validation(place, "validation");
    const Place functions(validation, "functions");
    for (std::size_t index = 0; index < property.validation->functions.size(); ++index)
      checkName(context, property.validation->functions[index], {functions, index});
  }
  if (property.value) check.check(*property.value, {place, "value"});
  if (!property.values) return;
  const Place values(place, "values");
  for (std::size_t index = 0; index < property.values->size(); ++index)
    check.check((*property.values)[index], {values, index});
}

}  // namespace

void checkPropertyValues(const CheckContext& context) {
  const Place root;
  const Place classes(root, "classes");
  ValueCheck check(context);
  for (std::size_t at = 0; at < context.description.classes.size(); ++at) {
    const auto& described = context.description.classes[at].properties;
    const Place oneClass(classes, at);
    const Place properties(oneClass, "properties");
    for (std::size_t index = 0; index < described.size(); ++index)
      checkPropertyOf(context, check, described[index], {properties, index});
  }
}

}  // namespace embedded::snapshot
