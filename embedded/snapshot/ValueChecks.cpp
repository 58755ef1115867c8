#include <algorithm>
#include <functional>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "embedded/model/Value.h"
#include "embedded/snapshot/Checks.h"

namespace embedded::snapshot {

namespace {

[[noreturn]] void refuseSize(const CheckContext& context, const JsonPointer& pointer,
                             const std::string& reason) {
  context.fail("snapshot.wrong-size", {pointer, "size"}, reason);
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
               const JsonPointer& pointer) {
  if (size.empty()) return;
  if (size.size() == 1) refuseSize(context, pointer, "a size has at least two dimensions");
  if (productOf(size) == count) return;
  refuseSize(context, pointer,
             "there are " + std::to_string(count) + " elements, which is not the product of the dimensions");
}

/// The size of structures without fields, which have no values to hold it against.
void checkBareSize(const CheckContext& context, const std::vector<std::size_t>& size,
                   const JsonPointer& pointer) {
  if (size.size() == 1) refuseSize(context, pointer, "a size has at least two dimensions");
  if (!productOf(size)) refuseSize(context, pointer, "the product of the dimensions is too big");
}

class ValueCheck {
 public:
  explicit ValueCheck(const CheckContext& context) : context_(context) {}

  void check(const ValueDescription& value, const JsonPointer& pointer) {
    std::visit([&](const auto& content) { checkContent(content, pointer); }, value.content);
  }

 private:
  using Names = std::unordered_set<std::string>;

  void checkContent(const DoubleArray& array, const JsonPointer& pointer) {
    checkSize(context_, array.size, array.elements.size(), pointer);
  }
  void checkContent(const LogicalArray& array, const JsonPointer& pointer) {
    checkSize(context_, array.size, array.elements.size(), pointer);
  }
  void checkContent(const CharacterRow&, const JsonPointer&) {}
  void checkContent(const StringScalar&, const JsonPointer&) {}
  void checkContent(const StringArray& array, const JsonPointer& pointer) {
    checkSize(context_, array.size, array.elements.size(), pointer);
  }
  void checkContent(const CharacterArray& array, const JsonPointer& pointer) {
    checkSize(context_, array.size, array.elements.size(), pointer);
  }
  void checkContent(const FunctionHandleValue& handle, const JsonPointer& pointer) {
    checkDottedName(context_, handle.function, {pointer, "handle"});
  }
  void checkContent(const ClassReferenceValue& reference, const JsonPointer& pointer) {
    if (context_.foreignClass(reference.className) != nullptr) return;
    context_.requireClass(reference.className, {pointer, "class"}, "the class of the reference");
  }
  void checkContent(const TallValue& tall, const JsonPointer& pointer) {
    if (tall.inside.size() != 1)
      context_.fail("snapshot.wrong-size", {pointer, "tall"}, "a tall value holds one value");
    check(tall.inside.front(), {pointer, "tall"});
  }

  void checkContent(const ForeignMemberValue& member, const JsonPointer& pointer) {
    const ForeignClassDescription* foreign = context_.foreignClass(member.className);
    if (foreign == nullptr)
      context_.fail("snapshot.unknown-class", {pointer, "foreign"},
                    inQuotes(member.className) + " is no foreign class of this snapshot");
    if (!namesIn(foreign, foreign->members, [](const std::string& name) {
           return &name;
         }).contains(member.member))
      context_.fail("snapshot.unknown-member", {pointer, "member"},
                    "the class " + inQuotes(foreign->name) + " has no member " + inQuotes(member.member));
  }

  void checkContent(const ObjectArray& array, const JsonPointer& pointer) {
    checkSize(context_, array.size, array.elements.size(), pointer);
    const JsonPointer classPointer(pointer, "class");
    if (array.foreign)
      checkName(context_, array.className, classPointer);
    else
      requireObjectClass(array.className, classPointer, "the class of the objects");
    forEach(array.elements, pointer, "objects",
            [&](const ValueDescription& element, const JsonPointer& here) {
              if (!isElementOf(array, element))
                context_.fail("snapshot.wrong-class", here, "this is no object of the class of the array");
              check(element, here);
            });
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
  std::optional<std::size_t> requireObjectClass(const std::string& name, const JsonPointer& pointer,
                                                const std::string& role) const {
    if (name == namespaceObjectClass && !context_.classes.find(name)) return {};
    return context_.requireClass(name, pointer, role);
  }

  void checkContent(const OpaqueObject& object, const JsonPointer& pointer) {
    checkName(context_, object.className, {pointer, "opaque"});
    const JsonPointer fields(pointer, "fields");
    const JsonPointer methods(pointer, "methods");
    for (const auto& [name, value] : object.fields) {
      checkName(context_, name, fields);
      check(value, {fields, name});
    }
    for (const auto& [name, answer] : object.methods) {
      checkName(context_, name, methods);
      if (answer) check(*answer, {methods, name});
    }
  }

  void checkContent(const CellArray& array, const JsonPointer& pointer) {
    checkSize(context_, array.size, array.elements.size(), pointer);
    forEach(array.elements, pointer, "cell", [&](const auto& element, const JsonPointer& here) {
      if (element) check(*element, here);
    });
  }

  void checkContent(const StructureArray& array, const JsonPointer& pointer) {
    checkFields(array, pointer);
    if (array.fields.empty()) return checkBareSize(context_, array.size, pointer);
    checkSize(context_, array.size, array.values.size() / array.fields.size(), pointer);
    for (std::size_t index = 0; index < array.values.size(); ++index) checkFieldValue(array, index, pointer);
  }

  void checkFields(const StructureArray& array, const JsonPointer& pointer) {
    Names seen;
    for (const auto& field : array.fields) {
      checkName(context_, field, pointer);
      if (!seen.insert(field).second)
        context_.fail("snapshot.duplicate-field", pointer, "there are two fields " + inQuotes(field));
    }
    const std::size_t left =
        array.fields.empty() ? array.values.size() : array.values.size() % array.fields.size();
    if (left != 0)
      context_.fail("snapshot.wrong-size", pointer,
                    "the structures have not one value for each of their fields");
  }

  /// One structure without a size is written as "struct", several as "structs".
  void checkFieldValue(const StructureArray& array, std::size_t index, const JsonPointer& pointer) {
    const std::string& field = array.fields[index % array.fields.size()];
    const bool single = array.size.empty() && array.values.size() == array.fields.size();
    const JsonPointer elements(pointer, single ? "struct" : "structs");
    const JsonPointer element = single ? elements : JsonPointer(elements, index / array.fields.size());
    check(array.values[index], {element, field});
  }

  void checkContent(const ObjectValue& object, const JsonPointer& pointer) {
    const auto index = requireObjectClass(object.className, {pointer, "object"}, "the class of the object");
    const JsonPointer properties(pointer, "properties");
    Names seen;
    for (const auto& [name, value] : object.properties) {
      const JsonPointer property(properties, name);
      if (index && !hasProperty(*index, name)) {
        context_.fail("snapshot.unknown-property", property,
                      "the class " + inQuotes(object.className) + " has no property " + inQuotes(name));
      }
      if (!seen.insert(name).second)
        context_.fail("snapshot.duplicate-property", property, inQuotes(name) + " has two values");
      check(value, property);
    }
    if (index && !object.member.empty()) requireMember(*index, object.member, {pointer, "member"});
  }

  void requireMember(std::size_t index, const std::string& name, const JsonPointer& pointer) {
    const ClassDescription& described = context_.description.classes[index];
    const auto nameOf = [](const EnumerationMemberDescription& member) {
      return member.name ? &*member.name : nullptr;
    };
    if (namesIn(&described, described.members, nameOf).contains(name)) return;
    context_.fail("snapshot.unknown-member", pointer,
                  "the class " + inQuotes(described.name) + " has no enumeration member " + inQuotes(name));
  }

  using NameViews = std::unordered_set<std::string_view>;

  /// The names of a class's members. Kept: a session may have many values of a class with many members.
  template <class List, class NameOf>
  const NameViews& namesIn(const void* ofClass, const List& members, NameOf nameOf) {
    const auto [names, isNew] = members_.try_emplace(ofClass);
    if (isNew)
      for (const auto& member : members)
        if (const std::string* name = nameOf(member)) names->second.insert(*name);
    return names->second;
  }

  /// An own one, or an inherited one.
  bool hasProperty(std::size_t index, const std::string& name) {
    if (reachedBy_.empty()) collectOwners();
    const auto owners = owners_.find(name);
    if (owners == owners_.end()) return false;
    reachFrom(index);
    return std::ranges::any_of(owners->second,
                               [&](std::size_t owner) { return reachedBy_[owner] == walks_; });
  }

  /// At the first question: most sessions have few objects, and many classes.
  void collectOwners() {
    const auto& classes = context_.description.classes;
    reachedBy_.resize(classes.size());
    for (std::size_t index = 0; index < classes.size(); ++index)
      for (const auto& property : classes[index].properties)
        if (property.name) owners_[*property.name].push_back(index);
  }

  /// Marks the class and its ancestors. Only those of one class are known at a time: those of all take memory by the
  /// square of their number.
  void reachFrom(std::size_t index) {
    if (std::exchange(start_, index) == index) return;
    // No recursion: chains of superclasses can be longer than the stack.
    std::vector<std::size_t> open{index};
    reachedBy_[index] = ++walks_;
    while (!open.empty()) {
      const std::size_t current = open.back();
      open.pop_back();
      for (const std::size_t superclass : context_.superclasses[current])
        if (std::exchange(reachedBy_[superclass], walks_) != walks_) open.push_back(superclass);
    }
  }

  const CheckContext& context_;
  /// Of each name of a property, the classes that have one of their own.
  std::unordered_map<std::string_view, std::vector<std::size_t>> owners_;
  std::unordered_map<const void*, NameViews> members_;
  /// Of each class, the latest walk that has reached it.
  std::vector<std::size_t> reachedBy_;
  std::size_t walks_ = 0;
  /// Where the latest walk began.
  std::optional<std::size_t> start_;
};

}  // namespace

void checkWorkspace(const CheckContext& context) {
  std::unordered_set<std::string> names;
  ValueCheck values(context);
  forEach(context.description.workspace, root, "workspace",
          [&](const VariableDescription& variable, const JsonPointer& here) {
            checkIdentifier(context, variable.name, {here, "name"});
            if (!names.insert(variable.name).second) {
              context.fail("snapshot.duplicate-variable", {here, "name"},
                           "there is already a variable " + inQuotes(variable.name));
            }
            inVariable(variable.name, [&] { values.check(variable.value, {here, "value"}); });
          });
}

namespace {

void checkPropertyOf(const CheckContext& context, ValueCheck& check, const PropertyDescription& property,
                     const JsonPointer& pointer) {
  if (property.validation) {
    const JsonPointer validation(pointer, "validation");
    forEach(property.validation->functions, validation, "functions",
            std::bind_front(checkName, std::cref(context)));
  }
  if (property.value) check.check(*property.value, {pointer, "value"});
  if (!property.values) return;
  forEach(*property.values, pointer, "values", std::bind_front(&ValueCheck::check, &check));
}

}  // namespace

void checkPropertyValues(const CheckContext& context) {
  ValueCheck check(context);
  forEach(context.description.classes, root, "classes",
          [&](const ClassDescription& described, const JsonPointer& oneClass) {
            forEach(described.properties, oneClass, "properties",
                    [&](const PropertyDescription& property, const JsonPointer& here) {
                      checkPropertyOf(context, check, property, here);
                    });
          });
}

}  // namespace embedded::snapshot
