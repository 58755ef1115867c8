#include <algorithm>

#include "embedded/host/Session.h"
#include "embedded/model/Value.h"

using namespace embedded;

namespace {

/// The field of one element; a field that nobody has set yet is set to an empty array, so that it can be borrowed.
Value* fieldOf(const Structures& structures, std::size_t index, std::string_view name) {
  const auto field = std::ranges::find(structures.fields, name);
  if (field == structures.fields.end()) return nullptr;
  const std::size_t at =
      index * structures.fields.size() + static_cast<std::size_t>(field - structures.fields.begin());
  ValuePtr& value = const_cast<ValuePtr&>(structures.values.at(at));
  if (value == nullptr) value = newEmpty();
  return value.get();
}

}  // namespace

int kxArray_tag::get_number_of_struct_fields() const {
  enter<Operation::getNumberOfStructFields>(this);
  const auto* structures = valueOf(this).as<Structures>();
  return structures == nullptr ? 0 : static_cast<int>(structures->fields.size());
}

const char* const* kxArray_tag::get_struct_field_names() const {
  enter<Operation::getStructFieldNames>(this);
  const auto& structures = std::get<Structures>(valueOf(this).content());
  structures.names.resize(structures.fields.size());
  std::ranges::transform(structures.fields, structures.names.begin(), &std::string::c_str);
  return structures.names.data();
}

kxArray_tag* kxGetField(const kxArray_tag* structure, std::size_t index, const char* name) {
  enter<Operation::getField>(structure, index, name);
  return fieldOf(std::get<Structures>(valueOf(structure).content()), index, name);
}

kxArray_tag* kxGetCell(const kxArray_tag* cell, std::size_t index) {
  enter<Operation::getCell>(cell, index);
  return std::get<Cells>(valueOf(cell).content()).elements.at(index).get();
}

kxArray_tag* kxCreateCell(std::size_t numberOfDimensions, const std::size_t* dimensions) {
  enter<Operation::createCell>(numberOfDimensions);
  Value::Size size(dimensions, dimensions + numberOfDimensions);
  if (size.size() < 2) size.resize(2, 1);
  session().interpreter.checkSize(size);
  ValuePtr cell = newValue(size, Cells());
  const_cast<Cells*>(cell->as<Cells>())->elements.resize(cell->elementCount());
  return cell.detach();
}

void kxSetCell(kxArray_tag* cell, std::size_t index, kxArray_tag* value) {
  const ValuePtr adopted(static_cast<Value*>(value), false);
  enter<Operation::setCell>(cell, index, value);
  const_cast<Cells&>(std::get<Cells>(valueOf(cell).content())).elements.at(index) = adopted;
}
