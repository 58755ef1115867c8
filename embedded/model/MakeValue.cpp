#include "embedded/model/ClassSystem.h"
#include "embedded/model/Interning.h"
#include "embedded/model/Unicode.h"
#include "embedded/model/Value.h"

namespace embedded {

ValuePtr newValue(Value::Size size, Value::Content content, DimensionForm form) {
  return ValuePtr(new Value(std::move(size), std::move(content), form), false);
}

ValuePtr newNumber(double number) { return newValue({1, 1}, std::vector<double>{number}); }
ValuePtr newLogical(bool value) { return newValue({1, 1}, std::vector<bool>{value}); }
ValuePtr newEmpty() { return newValue({0, 0}, std::vector<double>()); }

ValuePtr newText(std::u16string text) {
  const Value::Size size = text.empty() ? Value::Size{0, 0} : Value::Size{1, text.size()};
  return newValue(size, std::move(text));
}

ValuePtr newString(std::optional<std::u16string> text) {
  return newValue({1, 1}, Strings{{std::move(text)}});
}

ValuePtr newCellOfTexts(const std::vector<std::string>& texts) {
  Cells cells;
  for (const std::string& text : texts) cells.elements.push_back(newText(widened(text)));
  return newValue({texts.size(), 1}, std::move(cells));
}

namespace {

using Size = Value::Size;

Size sizeOr(const Size& declared, std::size_t count) { return declared.empty() ? Size{1, count} : declared; }

struct Maker {
  const ClassSystem& classes;

  ValuePtr operator()(const DoubleArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), array.elements);
  }

  ValuePtr operator()(const LogicalArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), array.elements);
  }

  ValuePtr operator()(const CharacterRow& row) const { return newText(row.text); }

  ValuePtr operator()(const CharacterArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), array.elements);
  }

  ValuePtr operator()(const StringScalar& scalar) const { return newString(scalar.text); }

  ValuePtr operator()(const StringArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), Strings{array.elements});
  }

  ValuePtr operator()(const CellArray& array) const {
    Cells cells;
    for (const auto& element : array.elements)
      cells.elements.push_back(element ? makeValue(*element, classes) : ValuePtr());
    return newValue(sizeOr(array.size, array.elements.size()), std::move(cells));
  }

  ValuePtr operator()(const StructureArray& array) const {
    Structures structures{array.fields, {}, array.className};
    for (const ValueDescription& value : array.values) structures.values.push_back(makeValue(value, classes));
    const std::size_t count = array.fields.empty() ? 0 : array.values.size() / array.fields.size();
    return newValue(sizeOr(array.size, count), std::move(structures));
  }

  ValuePtr operator()(const ObjectValue& value) const {
    const Class* found = classes.find(value.className);  // null: of a class that built-in functions know
    const kcos::COSInternedName id = found ? found->names().id : interned(value.className);
    Object object{id, found ? found->names().dotted : id, {}, value.member, value.text, value.failing};
    for (const auto& [name, property] : value.properties)
      object.properties.emplace_back(name, makeValue(property, classes));
    return newValue({1, 1}, std::move(object));
  }

  ValuePtr operator()(const ObjectArray& array) const {
    Objects objects{{}, dottedName(array.className)};
    for (const ValueDescription& element : array.elements)
      objects.elements.push_back(makeValue(element, classes));
    return newValue(sizeOr(array.size, array.elements.size()), std::move(objects));
  }

  ValuePtr operator()(const OpaqueObject& object) const {
    Opaque opaque{object.className, {}, {}, object.java};
    for (const auto& [name, field] : object.fields)
      opaque.fields.emplace_back(name, makeValue(field, classes));
    for (const auto& [name, answer] : object.methods)
      opaque.methods.push_back({name, answer ? makeValue(*answer, classes) : ValuePtr()});
    return newValue({1, 1}, std::move(opaque), object.dimensions);
  }

  ValuePtr operator()(const FunctionHandleValue& handle) const {
    return newValue({1, 1}, FunctionHandle{handle.function});
  }

  ValuePtr operator()(const ClassReferenceValue& reference) const {
    return newValue({1, 1}, ClassReference{dottedName(reference.className)});
  }

  ValuePtr operator()(const TallValue& tall) const {
    return newValue({1, 1}, Tall{makeValue(tall.inside.front(), classes)});
  }

  ValuePtr operator()(const ForeignMemberValue& member) const {
    return newValue({1, 1}, ForeignMember{member.className, member.member});
  }

  /// The name by which users know the class; that of a class which is not of the class system as it is.
  std::string dottedName(const std::string& className) const {
    const Class* found = classes.find(className);
    return found ? found->names().dotted.text() : className;
  }
};

}  // namespace

ValuePtr makeValue(const ValueDescription& description, const ClassSystem& classes) {
  return std::visit(Maker{classes}, description.content);
}

}  // namespace embedded
