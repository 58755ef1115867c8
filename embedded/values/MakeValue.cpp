#include "embedded/classes/ClassSystem.h"
#include "embedded/values/Value.h"

namespace embedded {

namespace {

using Size = std::vector<std::size_t>;

Size sizeOr(const Size& declared, std::size_t count) { return declared.empty() ? Size{1, count} : declared; }

ValuePtr newValue(Size size, Value::Content content) {
  return ValuePtr(new Value(std::move(size), std::move(content)), false);
}

struct Maker {
  const ClassSystem& classes;

  ValuePtr operator()(const DoubleArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), array.elements);
  }

  ValuePtr operator()(const LogicalArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), array.elements);
  }

  ValuePtr operator()(const CharacterRow& row) const {
    return newValue(row.text.empty() ? Size{0, 0} : Size{1, row.text.size()}, row.text);
  }

  ValuePtr operator()(const StringScalar& scalar) const { return newValue({1, 1}, scalar); }

  ValuePtr operator()(const CellArray& array) const {
    Cells cells;
    for (const auto& element : array.elements)
      cells.elements.push_back(element ? makeValue(*element, classes) : ValuePtr());
    return newValue(sizeOr(array.size, array.elements.size()), std::move(cells));
  }

  ValuePtr operator()(const StructureArray& array) const {
    Structures structures{array.fields, {}};
    for (const ValueDescription& value : array.values) structures.values.push_back(makeValue(value, classes));
    const std::size_t count = array.fields.empty() ? 0 : array.values.size() / array.fields.size();
    return newValue(sizeOr(array.size, count), std::move(structures));
  }

  ValuePtr operator()(const ObjectValue& value) const {
    const Class::Names& names = classes.find(value.className)->names();
    Object object{names.id, names.dotted, {}, value.member, value.text, value.failing};
    for (const auto& [name, property] : value.properties)
      object.properties.emplace_back(name, makeValue(property, classes));
    return newValue({1, 1}, std::move(object));
  }
};

}  // namespace

ValuePtr makeValue(const ValueDescription& description, const ClassSystem& classes) {
  return std::visit(Maker{classes}, description.content);
}

}  // namespace embedded
